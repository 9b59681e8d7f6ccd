#pragma once

#include "KT/IFileManager.h"
#include "KT/ObserverList.h"

namespace Velkor::KT
{

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
