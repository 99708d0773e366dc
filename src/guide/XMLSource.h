#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace ondavia {

/// The attributes of an element: name, value, name, value, up to a null pointer.
using XMLAttributes = const char* const*;

/// Takes the events of a document. Names are as written, prefix and all; texts are UTF-8 and come in any
/// number of runs.
class XMLEvents {
public:
    virtual ~XMLEvents() = default;
    // Called from within expat's C frames: these must not throw.
    virtual void startElement(std::string_view name, XMLAttributes attributes) noexcept = 0;
    virtual void characters(std::string_view run) noexcept = 0;
    virtual void endElement(std::string_view name) noexcept = 0;
    /// Called soon after `XMLSource::pause`, outside of expat; may throw.
    virtual void paused() = 0;
};

/// Reads one XML document as it arrives, with expat. Events do not depend on how the bytes were split.
/// Pure; one thread at a time.
///
/// Made for hostile documents. External entities and DTDs are never loaded, expat's limits on entity
/// amplification are on, at most 1,024 entities may be declared, and all that expat keeps (one unfinished
/// tag or comment, open elements, names, entities) must fit into 8 MiB. A document past a bound is over at
/// that point like one with a syntax error: no further events, and nobody is told.
///
/// Encodings: those of expat, and ICU's single-byte ones.
class XMLSource final {
public:
    static constexpr std::size_t maximumMemory = std::size_t{8} << 20;
    static constexpr int maximumEntities = 1024;

    /// `events` must outlive this object.
    explicit XMLSource(XMLEvents& events);
    ~XMLSource();
    XMLSource(const XMLSource&) = delete;
    XMLSource& operator=(const XMLSource&) = delete;

    void feed(std::string_view bytes);
    /// To be called once, after the last byte.
    void finish();
    [[nodiscard]] bool isOver() const { return m_isOver; }

    /// Within an event: has `paused` called before the next token is read.
    void pause();
    /// Within an event: ends the document here.
    void stop();

private:
    class Memory;
    struct Callbacks;

    void parseBlock(bool isLast);

    XMLEvents& m_events;
    std::unique_ptr<Memory> m_memory;
    struct ParserDeleter final {
        void operator()(void* parser) const;
    };
    std::unique_ptr<void, ParserDeleter> m_parser;
    /// Expat's buffer while it is being filled.
    char* m_block = nullptr;
    std::size_t m_filled = 0;
    int m_entities = 0;
    bool m_isOver = false;
};

} // namespace ondavia
