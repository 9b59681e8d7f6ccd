#pragma once

#include "App/ioPath.h"

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

}  // namespace Velkor::KT
