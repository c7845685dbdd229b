#pragma once

// What every benchmark program shares: bulk books made once per size and kept
// for the run, and a message service that reports instead of waiting for a
// person.
#include "messages/messageservice.h"
#include "suitefiles.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <memory>
#include <QTemporaryDir>

class QuietMessages : public MessageService
{
public:
    qint16 show(const MessageRequest &request) override
    {
        std::fprintf(stderr, "message: %s\n", qPrintable(request.prompt));
        return ResultOk;
    }
};

// The shared folder of a bulk book of this many entries, a fifth of them
// employees.
inline QString bookFor(int addresses)
{
    static std::map<int, std::unique_ptr<QTemporaryDir>> books;
    auto &dir = books[addresses];
    if (!dir) {
        dir = std::make_unique<QTemporaryDir>();
        SuiteFiles::bulkSuite(dir->path(), addresses, addresses / 5);
    }
    return dir->path();
}

// Runs the registered benchmarks with messages answered quietly; the caller
// has made its application object.
inline int runBenchmarks(int argc, char **argv)
{
    QuietMessages messages;
    setMessageService(&messages);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    setMessageService(nullptr);
    return 0;
}
