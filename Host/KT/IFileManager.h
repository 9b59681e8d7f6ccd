#pragma once

#include "App/ioPath.h"
#include "KT/ObserverList.h"

namespace Velkor::KT
{

class IFileManagerObserver
{
public:
    virtual ~IFileManagerObserver() = default;

    // The file was shown in the system's file browser.
    virtual void OnFileExplored(const App::ioPath& path) = 0;
    virtual void OnFileMovedToTrash(const App::ioPath& path) = 0;
    virtual void OnFileRemoved(const App::ioPath& path) = 0;
    virtual void OnCreateDirectories(const App::ioPath& path) = 0;
};

class IFileManager
{
public:
    virtual ~IFileManager() = default;

    virtual void AddObserver(IFileManagerObserver* observer) = 0;
    virtual void RemoveObserver(IFileManagerObserver* observer) = 0;
};

// Reference file manager: reports the operations; the file system work is the caller's.
class FileManager : public ObservableService<IFileManager, IFileManagerObserver>
{
public:
    void Explore(const App::ioPath& path) { Notify(&IFileManagerObserver::OnFileExplored, path); }
    void MoveToTrash(const App::ioPath& path)
    {
        Notify(&IFileManagerObserver::OnFileMovedToTrash, path);
    }
    void Remove(const App::ioPath& path) { Notify(&IFileManagerObserver::OnFileRemoved, path); }
    void CreateDirectories(const App::ioPath& path)
    {
        Notify(&IFileManagerObserver::OnCreateDirectories, path);
    }
};

}  // namespace Velkor::KT
