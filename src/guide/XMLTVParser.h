#pragma once

#include "entities/EPGProgram.h"
#include "guide/XMLSource.h"
#include "guide/XMLTVDateFormatter.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondavia {

/// Turns one XMLTV document into programmes while it arrives. Pure; one thread at a time.
///
/// Only `programme` elements count. Texts of several `title` elements of one programme are joined with
/// nothing between them, and so are those of `desc` and `category`. A programme with a date that cannot be
/// read, or without a title, is left out. A document that ends early, by a syntax error or one of the
/// bounds here and in XMLSource, has the programmes before that point, and nobody is told.
class XMLTVParser final : private XMLEvents {
public:
    /// Bytes of a title, a description, a category.
    static constexpr std::size_t maximumText = std::size_t{1} << 20;
    /// As many as the store can tell apart from those of the next guide.
    static constexpr std::size_t maximumPrograms = std::size_t{1} << 24;

    /// `onPrograms` gets the programmes in document order, at most 512 or about 1 MiB at a time; what it
    /// throws is raised by `feed` and `finish`, and ends the parser's use.
    explicit XMLTVParser(std::function<void(std::vector<EPGProgram>&&)> onPrograms);

    void feed(std::string_view bytes);
    /// To be called once, after the last byte.
    void finish();
    /// Whether further bytes change nothing.
    [[nodiscard]] bool isOver() const { return m_source.isOver(); }

private:
    /// The elements whose text is read.
    enum class Element { Other, Title, Desc, Category };

    void startElement(std::string_view name, XMLAttributes attributes) noexcept override;
    void characters(std::string_view run) noexcept override;
    void endElement(std::string_view name) noexcept override;
    void paused() override;

    void startProgramme(XMLAttributes attributes);
    void endProgramme();
    std::string* currentText();
    void deliver();

    std::function<void(std::vector<EPGProgram>&&)> m_onPrograms;
    XMLTVDateFormatter m_dateFormatter;
    std::vector<EPGProgram> m_programs;
    std::size_t m_programBytes = 0;
    std::size_t m_programCount = 0;
    Element m_currentElement = Element::Other;
    std::string m_currentChannelId;
    std::string m_currentTitle;
    std::string m_currentDesc;
    std::string m_currentCategory;
    std::optional<Date> m_currentStart;
    std::optional<Date> m_currentStop;
    bool m_inProgramme = false;
    XMLSource m_source;
};

} // namespace ondavia
