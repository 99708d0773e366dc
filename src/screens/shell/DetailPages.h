#pragma once

#include "screens/details/DetailServices.h"
#include "screens/details/DetailViewModel.h"

#include <QObject>
#include <qqmlregistration.h>

namespace ondavia {

/// The way from wherever a title shows to the page of its own, which opens over the present tab's pages. Main
/// thread.
class DetailPages final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")

public:
    /// What `services` refers to must outlive the object and the pages.
    explicit DetailPages(const DetailServices& services);

    /// `title` is a film or a series.
    void open(const Channel& title);

    /// Whoever shows a page for `model` lets it belong to the page; otherwise it goes at once.
    Q_SIGNAL void opened(ondavia::DetailViewModel* model);
    /// The titles were another account's, whose password stands in their addresses.
    Q_SIGNAL void allOutdated();

private:
    DetailServices m_services;
};

} // namespace ondavia
