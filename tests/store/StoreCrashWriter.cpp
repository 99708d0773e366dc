#include "store/LibraryStore.h"
#include "support/AcknowledgedLog.h"

#include <QCoreApplication>

#include <unistd.h>

#include <string>
#include <string_view>
#include <vector>

// A process to be killed in the middle of its writes.
//
//   store_crash_writer catalogue FOLDER ROWS   replaces all channels again and again; all rows of one
//                                              replacement carry its number as their group
//   store_crash_writer favourites FOLDER LOG   saves favourites one by one, and writes the channel id of
//                                              each into LOG once its save has returned

namespace {

using namespace ondavia;

std::vector<Channel> makeGeneration(std::int64_t number, std::int64_t count) {
    std::vector<Channel> rows(static_cast<std::size_t>(count));
    for (std::int64_t index = 0; index < count; ++index) {
        Channel& row = rows[static_cast<std::size_t>(index)];
        row.id = "main_" + std::to_string(index);
        row.num = index;
        row.type = "movie";
        row.groupTitle = std::to_string(number);
        row.plot = std::string(700, 'p');
    }
    return rows;
}

[[noreturn]] void replaceForEver(LibraryStore& store, std::int64_t count) {
    for (std::int64_t number = 1;; ++number) {
        const std::vector<Channel> rows = makeGeneration(number, count);
        Replacement<Channel> replacement = store.beginReplacement<Channel>();
        for (std::size_t first = 0; first < rows.size(); first += 250) {
            replacement.append(
                0, std::span(rows).subspan(first, std::min<std::size_t>(250, rows.size() - first)));
        }
        replacement.commit();
    }
}

[[noreturn]] void favourForEver(LibraryStore& store, const char* logFile) {
    const testing::AcknowledgedLog log(logFile);
    const std::string prefix = std::to_string(::getpid()) + "-";
    for (std::int64_t number = 1;; ++number) {
        const std::string id = prefix + std::to_string(number);
        store.mainContext().insert(Favorite("main", id));
        store.mainContext().save();
        log.append(id);
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 4) {
        return 2;
    }
    const auto store = LibraryStore::open(argv[2]);
    if (std::string_view(argv[1]) == "catalogue") {
        replaceForEver(*store, std::stoll(argv[3]));
    }
    favourForEver(*store, argv[3]);
}
