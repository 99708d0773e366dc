#include "screens/shell/DetailPages.h"

#include "screens/details/MovieDetailViewModel.h"
#include "screens/details/SeriesDetailViewModel.h"
#include "state/AppState.h"

#include <memory>

namespace ondavia {

DetailPages::DetailPages(const DetailServices& services)
    : m_services(services) {
    connect(&services.appState, &AppState::accountChanged, this, &DetailPages::allOutdated);
}

void DetailPages::open(const Channel& title) {
    std::unique_ptr<DetailViewModel> model;
    if (title.type == "series") {
        model = std::make_unique<SeriesDetailViewModel>(m_services, title);
    } else {
        model = std::make_unique<MovieDetailViewModel>(m_services, title);
    }
    Q_EMIT opened(model.get());
    if (model->parent() != nullptr) {
        // The page's from now on.
        (void)model.release();
    }
}

} // namespace ondavia
