#include "guide/XMLSource.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <expat.h>
#include <new>
#include <unicode/ucnv.h>

namespace ondavia {
namespace {

/// Expat always gets the document in blocks of this size, counted from its beginning.
constexpr std::size_t blockSize = std::size_t{64} << 10;
constexpr UChar32 replacementCharacter = 0xFFFD;

/// Describes a single-byte encoding to expat.
int describeEncoding(void*, const char* name, XML_Encoding* encoding) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(name, &status), &ucnv_close);
    if (U_FAILURE(status) || ucnv_getMaxCharSize(converter.get()) != 1) {
        return XML_STATUS_ERROR;
    }
    for (int byte = 0; byte < 256; ++byte) {
        const char text = static_cast<char>(byte);
        const char* next = &text;
        status = U_ZERO_ERROR;
        ucnv_reset(converter.get());
        const UChar32 character = ucnv_getNextUChar(converter.get(), &next, &text + 1, &status);
        encoding->map[byte] = U_SUCCESS(status) && character != replacementCharacter ? character : -1;
    }
    encoding->data = nullptr;
    encoding->convert = nullptr;
    encoding->release = nullptr;
    return XML_STATUS_OK;
}

XML_Parser expat(void* parser) {
    return static_cast<XML_Parser>(parser);
}

} // namespace

/// Expat's memory, counted. Expat's hooks have no argument to tell parsers apart, so the one at work is
/// that of the thread; each block knows whose it is.
class XMLSource::Memory final {
public:
    /// Makes `memory` the one that blocks are taken from on this thread.
    class Use final {
    public:
        explicit Use(Memory& memory)
            : m_previous(std::exchange(current, &memory)) {}
        ~Use() { current = m_previous; }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

    private:
        Memory* m_previous;
    };

    static void* allocate(std::size_t size) { return resize(nullptr, size); }

    static void* resize(void* bytes, std::size_t size) {
        Block* old = bytes ? static_cast<Block*>(bytes) - 1 : nullptr;
        Memory& owner = old ? *old->owner : *current;
        const std::size_t oldSize = old ? old->size : 0;
        if (size > maximumMemory || owner.m_used - oldSize + size > maximumMemory) {
            return nullptr;
        }
        auto* block = static_cast<Block*>(std::realloc(old, sizeof(Block) + size));
        if (!block) {
            return nullptr;
        }
        owner.m_used += size - oldSize;
        *block = {&owner, size};
        return block + 1;
    }

    static void release(void* bytes) {
        if (bytes) {
            Block* block = static_cast<Block*>(bytes) - 1;
            block->owner->m_used -= block->size;
            std::free(block);
        }
    }

private:
    struct alignas(std::max_align_t) Block final {
        Memory* owner;
        std::size_t size;
    };

    static thread_local Memory* current;
    std::size_t m_used = 0;
};

thread_local XMLSource::Memory* XMLSource::Memory::current = nullptr;

struct XMLSource::Callbacks final {
    static XMLSource& source(void* self) { return *static_cast<XMLSource*>(self); }

    static void start(void* self, const char* name, const char** attributes) {
        source(self).m_events.startElement(name, attributes);
    }
    static void end(void* self, const char* name) { source(self).m_events.endElement(name); }
    static void characters(void* self, const char* run, int length) {
        source(self).m_events.characters({run, static_cast<std::size_t>(length)});
    }
    /// Expat expands entities within entities by recursion: their number bounds its depth.
    static void entity(void* self, const char*, int, const char*, int, const char*, const char*, const char*,
                       const char*) {
        if (++source(self).m_entities > maximumEntities) {
            source(self).stop();
        }
    }
};

void XMLSource::ParserDeleter::operator()(void* parser) const {
    XML_ParserFree(expat(parser));
}

XMLSource::XMLSource(XMLEvents& events)
    : m_events(events)
    , m_memory(std::make_unique<Memory>()) {
    static constexpr XML_Memory_Handling_Suite suite{&Memory::allocate, &Memory::resize, &Memory::release};
    const Memory::Use use(*m_memory);
    m_parser.reset(XML_ParserCreate_MM(nullptr, &suite, nullptr));
    if (!m_parser) {
        throw std::bad_alloc();
    }
    const XML_Parser parser = expat(m_parser.get());
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, &Callbacks::start, &Callbacks::end);
    XML_SetCharacterDataHandler(parser, &Callbacks::characters);
    XML_SetEntityDeclHandler(parser, &Callbacks::entity);
    XML_SetUnknownEncodingHandler(parser, &describeEncoding, nullptr);
}

XMLSource::~XMLSource() = default;

void XMLSource::feed(std::string_view bytes) {
    while (!bytes.empty() && !m_isOver) {
        if (!m_block) {
            const Memory::Use use(*m_memory);
            m_block = static_cast<char*>(XML_GetBuffer(expat(m_parser.get()), blockSize));
            m_isOver = m_block == nullptr;
            continue;
        }
        const std::size_t count = std::min(bytes.size(), blockSize - m_filled);
        std::memcpy(m_block + m_filled, bytes.data(), count);
        m_filled += count;
        bytes.remove_prefix(count);
        if (m_filled == blockSize) {
            parseBlock(false);
        }
    }
}

void XMLSource::finish() {
    if (!m_isOver) {
        parseBlock(true);
    }
    m_isOver = true;
}

void XMLSource::parseBlock(bool isLast) {
    const XML_Parser parser = expat(m_parser.get());
    const Memory::Use use(*m_memory);
    if (!m_block && !XML_GetBuffer(parser, 0)) {
        m_isOver = true;
        return;
    }
    XML_Status status = XML_ParseBuffer(parser, static_cast<int>(std::exchange(m_filled, 0)), isLast);
    m_block = nullptr;
    while (status == XML_STATUS_SUSPENDED) {
        m_events.paused();
        status = XML_ResumeParser(parser);
    }
    m_isOver = status == XML_STATUS_ERROR;
}

void XMLSource::pause() {
    XML_StopParser(expat(m_parser.get()), XML_TRUE);
}

void XMLSource::stop() {
    XML_StopParser(expat(m_parser.get()), XML_FALSE);
}

} // namespace ondavia
