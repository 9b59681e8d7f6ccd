#pragma once

// Included by each fuzz target, which defines LLVMFuzzerTestOneInput: libFuzzer calls it in a
// fuzzing build, ReplayMain.cpp calls it for stored inputs in any other build.

#include "Support/FuzzChecks.h"
#include "Support/Process.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace KtFuzz
{

using KtTest::ExpectSame;
using KtTest::Fail;
using Velkor::KT::Tracking::Event;
using Recorder = KtTest::NamedEventsRecorder;

// Brings up what every target needs, once per process: the program's set-up, with only fatal log
// lines on stderr, and Xerces initialised and kept so, as a host that keeps its statistics
// manager does; otherwise each input would pay for initialising the parser again.
inline void InitProcess()
{
    static const bool done = []
    {
        static int argc = 1;
        static char name[] = "kt-fuzz";
        static char* argv[] = {name, nullptr};
        // Lives as long as the process: the targets run inside it.
        KtTest::StartProcess(argc, argv, google::GLOG_FATAL).release();
        xercesc::XMLPlatformUtils::Initialize();
        return true;
    }();
    (void)done;
}

}  // namespace KtFuzz
