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

// Reference sharing manager for one target.
class KT_HOST_EXPORT SharingManager : public AbstractSharingManager
{
    Q_OBJECT

public:
    explicit SharingManager(int target, QObject* parent = nullptr);

    int GetSharingTarget() const override;
    void Finish(const App::ioPath& file, bool success);

private:
    const int m_target;
};

}  // namespace Velkor::KT::Service::Sharing
