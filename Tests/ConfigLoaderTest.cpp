#include "Tracking/Config/ConfigLoader.h"

#include "Support/LogCapture.h"

#include <QFile>
#include <QResource>
#include <QString>

#include <gtest/gtest.h>

#include <string>

using Velkor::KT::Tracking::LoadConfigFromQrc;

namespace
{

// Missing documents give an empty text, silently; only resources are read, never files.
TEST(ConfigLoaderTest, MissingDocumentGivesEmptyTextSilently)
{
    KtTest::LogCapture log;
    for (const std::string path : {"/KT/Tracking/NoSuch.xml", "/KT/Tracking/config.xml",
                                   "/KT/Tracking", "", SOURCE_CONFIG_DIR "/Config.xml"})
    {
        EXPECT_EQ(LoadConfigFromQrc(path), "") << path;
    }
    EXPECT_TRUE(log.Lines().empty());
}

// The resource holds each document byte for byte as written, whichever spelling of the path.
TEST(ConfigLoaderTest, GivesTheSourceBytes)
{
    for (const std::string name : {"Config.xml", "ConfigGACA.xml", "FilterConfig.xml",
                                   "FilterConfigGACA.xml", "AggregatorConfig.xml"})
    {
        QFile source(QString::fromStdString(SOURCE_CONFIG_DIR "/" + name));
        ASSERT_TRUE(source.open(QIODevice::ReadOnly));
        const std::string expected = source.readAll().toStdString();
        EXPECT_EQ(LoadConfigFromQrc("/KT/Tracking/" + name), expected);
        EXPECT_EQ(LoadConfigFromQrc(":/KT/Tracking/" + name), expected);
        EXPECT_EQ(QResource(QString::fromStdString(":/KT/Tracking/" + name)).compressionAlgorithm(),
                  QResource::ZlibCompression);
    }
}

TEST(ConfigLoaderTest, MainDocumentStartsWithItsCommentAndKeepsCrLf)
{
    const std::string text = LoadConfigFromQrc("/KT/Tracking/Config.xml");
    ASSERT_EQ(text.rfind("<!--", 0), 0u);
    const auto firstLineEnd = text.find('\n');
    ASSERT_NE(firstLineEnd, std::string::npos);
    EXPECT_EQ(text[firstLineEnd - 1], '\r');
    EXPECT_EQ(text.compare(firstLineEnd + 1, 8, "<ktmstat"), 0);
    std::size_t bareLineFeeds = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        bareLineFeeds += text[i] == '\n' && (i == 0 || text[i - 1] != '\r');
    }
    EXPECT_EQ(bareLineFeeds, 0u);
}

}  // namespace
