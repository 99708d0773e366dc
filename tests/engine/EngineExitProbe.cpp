#include "platform/NotificationCenter.h"
#include "playback/engine/MpvPlayerFactory.h"

#include <QCoreApplication>
#include <QTimer>

#include <vector>

/// Opens the given URL with several engines, shuts half of them down and ends at once.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    ondavia::NotificationCenter center;
    const auto factory = ondavia::makeMpvPlayerFactory(center, ondavia::MpvOutputs::Null);
    std::vector<std::shared_ptr<ondavia::FSPlayer>> players;
    for (int number = 0; number < 6; ++number) {
        players.push_back(factory(argv[1], ondavia::FSOptions::optionsByDefault()));
        players.back()->prepareToPlay();
    }
    QTimer::singleShot(200, &application, [&players] {
        for (std::size_t number = 0; number < players.size(); number += 2) {
            players[number]->shutdown();
        }
        QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}
