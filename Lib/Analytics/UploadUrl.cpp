#include "Analytics/UploadUrl_p.h"

#include <QSslSocket>

#include <stdexcept>

namespace Velkor::Analytics
{

QUrl CheckedUploadUrl(const std::string& text)
{
    const auto refuse = [](const std::string& why)
    { throw std::invalid_argument("Statistics upload URL refused: " + why); };
    if (text.empty())
    {
        refuse("it is empty");
    }
    const QUrl url(QString::fromStdString(text), QUrl::StrictMode);
    if (!url.isValid())
    {
        refuse("'" + text + "' is not a URL (" + url.errorString().toStdString() + ")");
    }
    if (!url.userInfo().isEmpty())
    {
        refuse("'" + UrlForMessages(url) +
               "' holds a user name or password; give credentials as user and key (ClickHouse) "
               "or as headers");
    }
    const QString scheme = url.scheme().toLower();
    if (scheme != "http" && scheme != "https")
    {
        refuse("'" + text + "' is not an http:// or https:// URL" +
               (scheme.isEmpty() ? std::string(" (it has no scheme)")
                                 : " (its scheme is '" + scheme.toStdString() + "')"));
    }
    if (url.host().isEmpty())
    {
        refuse("'" + text + "' names no host");
    }
    if (scheme == "https" && !QSslSocket::supportsSsl())
    {
        refuse("'" + text +
               "' is https, but Qt has no TLS backend here (QSslSocket::supportsSsl() is false: "
               "OpenSSL " +
               QSslSocket::sslLibraryBuildVersionString().toStdString() +
               " cannot be loaded); install it or use http");
    }
    return url;
}

std::string UrlForMessages(const QUrl& url)
{
    return url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment)
        .toString()
        .toStdString();
}

}  // namespace Velkor::Analytics
