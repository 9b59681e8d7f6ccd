// kttrack: replays events through the rule stages and checks tracking documents.

#include "KtTrack.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    std::vector<std::string> args;
    for (int i = 1; i < argc; ++i)
    {
        args.emplace_back(argv[i]);
    }
    return Velkor::KT::KtTrack::RunKtTrack(args, std::cin, std::cout, std::cerr);
}
