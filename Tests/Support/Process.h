#pragma once

// What every test, benchmark and fuzz program of this repository starts with.

#include <glog/logging.h>

#include <QApplication>

#include <memory>

namespace KtTest
{

// Brings up glog writing to no file, only to the sinks the program installs and, from
// `stderrThreshold` up, to stderr; then a QApplication on the offscreen platform unless another
// platform is asked for (QT_QPA_PLATFORM). `argc` and `argv` must outlive the application.
std::unique_ptr<QApplication> StartProcess(
    int& argc, char** argv, google::LogSeverity stderrThreshold = google::GLOG_WARNING);

}  // namespace KtTest
