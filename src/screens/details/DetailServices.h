#pragma once

namespace ondavia {

class AppState;
class StoreContext;

/// What the detail pages work with. Both must outlive them.
struct DetailServices final {
    AppState& appState;
    StoreContext& modelContext;
};

} // namespace ondavia
