#include "Tracking/ConfigLoader.h"

#include "Support/LogCapture.h"

#include <QFile>
#include <QResource>
#include <QString>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

using Velkor::KT::Tracking::LoadConfigFromQrc;

namespace
{

struct MissingRow
{
    const char* label;
    std::string path;
};

void PrintTo(const MissingRow& row, std::ostream* out)
{
    *out << row.label;
}

class ConfigLoaderMissingTest : public testing::TestWithParam<MissingRow>
{
};

TEST_P(ConfigLoaderMissingTest, GivesEmptyTextSilently)
{
    KtTest::LogCapture log;
    EXPECT_EQ(LoadConfigFromQrc(GetParam().path), "");
    EXPECT_TRUE(log.Lines().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Paths, ConfigLoaderMissingTest,
    testing::Values(MissingRow{"NoSuchDocument", "/KT/Tracking/NoSuch.xml"},
                    MissingRow{"WrongCase", "/KT/Tracking/config.xml"},
                    MissingRow{"Directory", "/KT/Tracking"}, MissingRow{"Empty", ""},
                    // Only resources are read, never the file system.
                    MissingRow{"FileOnDisk", SOURCE_CONFIG_DIR "/Config.xml"}));

class ConfigLoaderDocumentTest : public testing::TestWithParam<const char*>
{
};

// The resource holds the document byte for byte as written, whichever spelling of the path.
TEST_P(ConfigLoaderDocumentTest, GivesTheSourceBytes)
{
    const std::string name = GetParam();
    QFile source(QString::fromUtf8(SOURCE_CONFIG_DIR "/") + QString::fromStdString(name));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray bytes = source.readAll();
    const std::string expected(bytes.constData(), static_cast<std::size_t>(bytes.size()));

    EXPECT_EQ(LoadConfigFromQrc("/KT/Tracking/" + name), expected);
    EXPECT_EQ(LoadConfigFromQrc(":/KT/Tracking/" + name), expected);
    EXPECT_EQ(QResource(QString::fromStdString(":/KT/Tracking/" + name)).compressionAlgorithm(),
              QResource::ZlibCompression);
}

INSTANTIATE_TEST_SUITE_P(Documents, ConfigLoaderDocumentTest,
                         testing::Values("Config.xml", "ConfigGACA.xml", "FilterConfig.xml",
                                         "FilterConfigGACA.xml", "AggregatorConfig.xml"));

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
