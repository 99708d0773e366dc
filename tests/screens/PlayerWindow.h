#pragma once

#include "ScreensWindow.h"
#include "playback/PlayerManager.h"
#include "screens/player/PlayerViewModel.h"

namespace ondavia::testing {

/// The player in the window, over an engine that writes down what it is told.
class PlayerWindowTest : public ScreensTest {
protected:
    void playFilm() {
        show();
        appState.playChannel(title(1, "movie", "Drama", "Uma Longa Noite"));
        scheduler.runPending();
        playerManager.setIsBuffering(false);
        playerManager.setIsPlaying(true);
        reach(100, 1000);
        settle();
    }
    void reach(double position, double duration) {
        const auto engine = lastEngine.lock();
        engine->time = position;
        engine->length = duration;
        playerManager.setDuration(duration);
        playerManager.setCurrentTime(position);
    }
    [[nodiscard]] PlayerViewModel& player() {
        return dynamic_cast<PlayerViewModel&>(*models->player()->player());
    }
    void clickAt(QPoint place) {
        QTest::mouseClick(window, Qt::LeftButton, {}, place);
        drainEvents();
    }
    void doubleClickAt(QPoint place) {
        clickAt(place);
        clickAt(place);
    }
    /// Clicks that follow must not count as one double click.
    void waitAfterClicks() {
        scheduler.advance(1);
        settle();
    }
};

} // namespace ondavia::testing
