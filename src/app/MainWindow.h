#pragma once

#include "screens/Screens.h"
#include "screens/shell/ContentViewModel.h"

#include <optional>
#include <string>

namespace ondavia {

class Services;

/// The screens over their services, in the one window. Main thread; `services` must outlive it.
class MainWindow final {
public:
    /// `language` is the code of the texts' language, empty for the user's own. Raises std::runtime_error
    /// when the window cannot be opened.
    MainWindow(Services& services, const std::string& language);

    [[nodiscard]] QQuickWindow& window() const { return m_screens->window(); }

private:
    ContentViewModel m_content;
    std::optional<Screens> m_screens;
};

} // namespace ondavia
