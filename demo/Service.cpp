#include "demo/Service.h"

#include <filesystem>
#include <future>

namespace ondavia::demo {

Service::Service(const DemoOptions& wanted, int listening, Faults& faultList, MediaFactory& factory,
                 Pictures& drawer)
    : options(wanted)
    , port(listening)
    , baseUrl("http://127.0.0.1:" + std::to_string(listening))
    , catalogue(wanted.seed, wanted.scale)
    , guide(catalogue, wanted.seed)
    , replies(catalogue, guide, baseUrl)
    , titles(catalogue)
    , faults(faultList)
    , media(factory)
    , pictures(drawer) {
    auto films = std::async(std::launch::async, [this] { return replies.films(); });
    m_live = std::make_shared<const std::string>(replies.liveStreams());
    m_series = std::make_shared<const std::string>(replies.series());
    m_films = std::make_shared<const std::string>(films.get());
    if (options.guideProgrammes > 0) {
        makeGeneratedGuide();
    }
}

void Service::makeGeneratedGuide() {
    const std::filesystem::path folder =
        options.mediaFolder.empty() ? defaultMediaFolder() : options.mediaFolder;
    std::filesystem::create_directories(folder);
    const UnixTime now = unixNow();
    const std::string stem = "guide-" + std::to_string(options.guideProgrammes) + "-" +
                             std::to_string(options.seed) + "-" + std::to_string(options.scale) + "-";
    const std::string name = stem + std::to_string(now / 86400) + ".xml";
    m_generatedGuide = folder / name;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string other = entry.path().filename().string();
        if (other.starts_with(stem) && other.ends_with(".xml") && other != name) {
            std::filesystem::remove(entry.path());
        }
    }
    if (std::filesystem::exists(m_generatedGuide)) {
        return;
    }
    std::filesystem::path part = m_generatedGuide;
    part += "." + std::to_string(port) + ".part";
    guide.writeGenerated(part, options.guideProgrammes, now);
    std::filesystem::rename(part, m_generatedGuide);
}

Body Service::list(std::string_view action) const {
    if (action == "get_live_streams") {
        return m_live;
    }
    if (action == "get_vod_streams") {
        return m_films;
    }
    if (action == "get_series") {
        return m_series;
    }
    const auto categories = action == "get_live_categories"     ? liveCategories()
                            : action == "get_vod_categories"    ? filmCategories()
                            : action == "get_series_categories" ? seriesCategories()
                                                                : std::span<const CategoryRow>();
    return categories.empty() ? nullptr
                              : std::make_shared<const std::string>(Replies::categories(categories));
}

Body Service::guideDocument() {
    const std::lock_guard lock(m_mutex);
    if (const UnixTime now = unixNow(); !m_guide || now - m_guideMade >= 3600) {
        m_guide = std::make_shared<const std::string>(guide.document(now));
        m_guideMade = now;
    }
    return m_guide;
}

} // namespace ondavia::demo
