#include "guide/XMLTVParser.h"

#include "base/Text.h"
#include "guide/RandomUUID.h"

namespace ondavia {
namespace {

constexpr std::size_t batchPrograms = 512;
constexpr std::size_t batchBytes = std::size_t{1} << 20;

std::optional<std::string> trimmedUnlessEmpty(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(std::string(trimmedWhitespaceAndNewlines(text)));
}

std::size_t sizeOf(const EPGProgram& program) {
    return program.channelId.size() + program.title.size() + (program.desc ? program.desc->size() : 0) +
           (program.category ? program.category->size() : 0);
}

} // namespace

XMLTVParser::XMLTVParser(std::function<void(std::vector<EPGProgram>&&)> onPrograms)
    : m_onPrograms(std::move(onPrograms))
    , m_source(*this) {}

void XMLTVParser::feed(std::string_view bytes) {
    m_source.feed(bytes);
}

void XMLTVParser::finish() {
    m_source.finish();
    deliver();
}

void XMLTVParser::startElement(std::string_view name, XMLAttributes attributes) noexcept {
    m_currentElement = name == "title"      ? Element::Title
                       : name == "desc"     ? Element::Desc
                       : name == "category" ? Element::Category
                                            : Element::Other;
    if (name == "programme") {
        startProgramme(attributes);
    }
}

void XMLTVParser::characters(std::string_view run) noexcept {
    std::string* text = m_inProgramme ? currentText() : nullptr;
    if (!text) {
        return;
    }
    if (text->size() + run.size() > maximumText) {
        m_source.stop();
        return;
    }
    text->append(run);
}

void XMLTVParser::endElement(std::string_view name) noexcept {
    m_currentElement = Element::Other;
    if (name == "programme") {
        endProgramme();
    }
}

void XMLTVParser::paused() {
    deliver();
}

/// The only place where the fields are cleared: after a programme within a programme, the outer end finds
/// what the inner one had.
void XMLTVParser::startProgramme(XMLAttributes attributes) {
    m_inProgramme = true;
    m_currentChannelId.clear();
    m_currentTitle.clear();
    m_currentDesc.clear();
    m_currentCategory.clear();
    m_currentStart.reset();
    m_currentStop.reset();
    for (; *attributes; attributes += 2) {
        const std::string_view name = attributes[0];
        if (name == "channel") {
            m_currentChannelId = attributes[1];
        } else if (name == "start") {
            m_currentStart = m_dateFormatter.date(attributes[1]);
        } else if (name == "stop") {
            m_currentStop = m_dateFormatter.date(attributes[1]);
        }
    }
}

void XMLTVParser::endProgramme() {
    m_inProgramme = false;
    if (!m_currentStart || !m_currentStop || m_currentTitle.empty()) {
        return;
    }
    m_programs.push_back({randomUUID(), m_currentChannelId,
                          std::string(trimmedWhitespaceAndNewlines(m_currentTitle)),
                          trimmedUnlessEmpty(m_currentDesc), *m_currentStart, *m_currentStop,
                          trimmedUnlessEmpty(m_currentCategory)});
    m_programBytes += sizeOf(m_programs.back());
    if (++m_programCount == maximumPrograms) {
        m_source.stop();
    } else if (m_programs.size() >= batchPrograms || m_programBytes >= batchBytes) {
        m_source.pause();
    }
}

std::string* XMLTVParser::currentText() {
    switch (m_currentElement) {
    case Element::Title:
        return &m_currentTitle;
    case Element::Desc:
        return &m_currentDesc;
    case Element::Category:
        return &m_currentCategory;
    case Element::Other:
        break;
    }
    return nullptr;
}

void XMLTVParser::deliver() {
    if (!m_programs.empty()) {
        m_programBytes = 0;
        m_onPrograms(std::exchange(m_programs, {}));
    }
}

} // namespace ondavia
