#pragma once

#include "App/ioPath.h"
#include "HostExport.h"

#include <QObject>

namespace Velkor::KT::Service::Sharing
{

// Sharing targets: 0 the company's cloud, 1 WhatsApp, 2 Telegram, 3 e-mail, 4 YouTube,
// 5 Google Drive.
class KT_HOST_EXPORT AbstractSharingManager : public QObject
{
    Q_OBJECT

public:
    explicit AbstractSharingManager(QObject* parent = nullptr);
    ~AbstractSharingManager() override;

    virtual int GetSharingTarget() const = 0;

signals:
    // A share of `file` ended, successfully or not.
    void SharingFinished(const Velkor::App::ioPath& file, bool success);
};

}  // namespace Velkor::KT::Service::Sharing
