#include "guide/BodyInflater.h"

#include <vector>
#include <zlib.h>

namespace ondavia {
namespace {

constexpr std::string_view gzipMagic = "\x1f\x8b";
constexpr std::size_t outputBlock = std::size_t{256} << 10;
/// The largest window, and 16 for a gzip header.
constexpr int gzipWindowBits = 15 + 16;

} // namespace

class BodyInflater::Stream final {
public:
    Stream()
        : output(outputBlock) {
        if (inflateInit2(&m_state, gzipWindowBits) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Stream() { inflateEnd(&m_state); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    void setInput(std::string_view bytes) {
        // zlib's interface lacks the const; it does not write to its input.
        m_state.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
        m_state.avail_in = static_cast<uInt>(bytes.size());
    }

    /// Inflates into `output` until that is full or the input is used up. False after the last usable byte.
    bool step(std::string_view& inflated) {
        m_state.next_out = reinterpret_cast<Bytef*>(output.data());
        m_state.avail_out = static_cast<uInt>(output.size());
        const int result = ::inflate(&m_state, Z_NO_FLUSH);
        inflated = {output.data(), output.size() - m_state.avail_out};
        if (result == Z_STREAM_END) {
            return inflateReset(&m_state) == Z_OK;
        }
        return result == Z_OK || result == Z_BUF_ERROR;
    }

    /// Whether another step has something to do.
    [[nodiscard]] bool hasMore() const { return m_state.avail_in > 0 || m_state.avail_out == 0; }

private:
    std::vector<char> output;
    z_stream m_state{};
};

BodyInflater::BodyInflater(std::function<void(std::string_view)> onBytes)
    : m_onBytes(std::move(onBytes)) {}

BodyInflater::~BodyInflater() = default;

void BodyInflater::feed(std::string_view bytes) {
    if (m_form == Form::Unknown) {
        m_head += bytes;
        if (m_head.size() < gzipMagic.size()) {
            return;
        }
        m_form = m_head.starts_with(gzipMagic) ? Form::Gzip : Form::Plain;
        bytes = m_head;
    }
    if (m_form == Form::Plain) {
        m_onBytes(bytes);
    } else if (m_form == Form::Gzip) {
        inflate(bytes);
    }
}

void BodyInflater::finish() {
    if (m_form == Form::Unknown && !m_head.empty()) {
        m_onBytes(m_head);
    }
    m_form = Form::Over;
}

void BodyInflater::inflate(std::string_view bytes) {
    if (!m_stream) {
        m_stream = std::make_unique<Stream>();
    }
    m_stream->setInput(bytes);
    bool goesOn = true;
    while (goesOn && m_stream->hasMore()) {
        std::string_view inflated;
        goesOn = m_stream->step(inflated);
        inflated = inflated.substr(0, maximumInflatedBytes - m_inflatedBytes);
        m_inflatedBytes += inflated.size();
        goesOn = goesOn && m_inflatedBytes < maximumInflatedBytes;
        m_onBytes(inflated);
    }
    if (!goesOn) {
        m_form = Form::Over;
    }
}

} // namespace ondavia
