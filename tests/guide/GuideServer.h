#pragma once

#include "GuideSamples.h"
#include "guide/EPGService.h"
#include "platform/linux/CurlURLSession.h"
#include "store/LibraryStore.h"
#include "support/HttpServer.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ondavia::testing {

/// A real store, a real server and the service between them.
class GuideTest : public ::testing::Test {
protected:
    /// Serves `body` at /xmltv.php.
    void serve(std::string body, int status = 200) {
        http.server.Get("/xmltv.php",
                        [body = std::move(body), status](const auto&, httplib::Response& reply) {
                            reply.status = status;
                            reply.set_content(body, "application/xml");
                        });
        http.start();
    }
    void load() { resultOf(service().loadEPG(http.url("/xmltv.php"))); }

    EPGService service() {
        return EPGService(
            {*store,
             [](const URLSessionConfiguration& configuration) { return makeCurlURLSession(configuration); },
             folder.path() / "cache", workers});
    }

    /// A guide of one programme, from before.
    void storeOldGuide() {
        store->mainContext().insert(EPGProgram{"old", "c1", "old", std::nullopt, utc(2024, 1, 15, 12),
                                               utc(2024, 1, 15, 13), std::nullopt});
        store->mainContext().save();
    }
    std::vector<std::string> titles() {
        return titlesOf(store->mainContext().fetch<EPGProgram>({.sort = {ascending(&EPGProgram::start)}}));
    }

    TemporaryFolder folder;
    std::unique_ptr<LibraryStore> store = LibraryStore::open(folder.path() / "store");
    CountedThreads workers;
    HttpServer http;
};

} // namespace ondavia::testing
