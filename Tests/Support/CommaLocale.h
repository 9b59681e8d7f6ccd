#pragma once

// Ways to make a process format numbers with a decimal comma, for tests of text that must use a
// point under any locale.

#include <QByteArray>
#include <QFile>
#include <QLocale>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <clocale>
#include <cstdio>
#include <locale>
#include <memory>
#include <string>

namespace KtTest
{

// Qt's default locale German and the C++ global locale one with a decimal comma. Needs no locale
// installed on the machine; the C library's locale (printf) is left alone.
class QtAndStdCommaLocale
{
public:
    QtAndStdCommaLocale() : m_previous(std::locale())
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        std::locale::global(std::locale(std::locale::classic(), new CommaPunct));
    }

    ~QtAndStdCommaLocale()
    {
        std::locale::global(m_previous);
        QLocale::setDefault(QLocale::c());
    }

private:
    struct CommaPunct : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    const std::locale m_previous;
};

// The C library's numeric locale German, compiled with localedef into a temporary directory
// (glibc finds it through LOCPATH), so printf writes "96,000000". Active() is false, with the
// reason in Why(), when the machine lacks localedef or its locale sources.
class CLibraryCommaLocale
{
public:
    CLibraryCommaLocale()
    {
        if (!m_directory.isValid())
        {
            m_why = "no temporary directory";
            return;
        }
        QProcess localedef;
        localedef.start(QStringLiteral("localedef"),
                        {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                         QStringLiteral("ISO-8859-1"), m_directory.filePath("de_DE")});
        if (!localedef.waitForFinished(120000))
        {
            m_why = "localedef did not run: " + localedef.errorString().toStdString();
            return;
        }
        m_previousLocpath = qgetenv("LOCPATH");
        qputenv("LOCPATH", QFile::encodeName(m_directory.path()));
        if (!std::setlocale(LC_NUMERIC, "de_DE"))
        {
            m_why = "localedef could not build de_DE: " +
                    localedef.readAllStandardError().toStdString();
            return;
        }
        char text[32];
        std::snprintf(text, sizeof(text), "%f", 96.0);
        m_active = std::string(text) == "96,000000";
        if (!m_active)
        {
            m_why = std::string("de_DE formats 96.0 as ") + text;
        }
    }

    ~CLibraryCommaLocale()
    {
        std::setlocale(LC_NUMERIC, "C");
        if (m_previousLocpath.isNull())
        {
            qunsetenv("LOCPATH");
        }
        else
        {
            qputenv("LOCPATH", m_previousLocpath);
        }
    }

    bool Active() const { return m_active; }
    const std::string& Why() const { return m_why; }

private:
    QTemporaryDir m_directory;
    QByteArray m_previousLocpath;
    bool m_active = false;
    std::string m_why;
};

}  // namespace KtTest
