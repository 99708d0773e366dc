#pragma once

class QQmlEngine;

namespace ondavia {

/// Makes the modules that the screens are written in known to `engine`. Main thread.
void provideScreens(QQmlEngine& engine);

} // namespace ondavia
