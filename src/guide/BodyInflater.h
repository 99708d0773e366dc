#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace ondavia {

/// Passes a body on as it arrives, inflated if its first two bytes say that it is a gzip file (of one
/// member or several). Pure; one body each.
///
/// A broken or endless file is over where it breaks, or after `maximumInflatedBytes`: what came before it
/// has been passed on, nothing follows, and nobody is told.
class BodyInflater final {
public:
    static constexpr std::uint64_t maximumInflatedBytes = std::uint64_t{4} << 30;

    /// `onBytes` gets at most 256 KiB at a time if the body is inflated; what it throws is raised by `feed`.
    explicit BodyInflater(std::function<void(std::string_view)> onBytes);
    ~BodyInflater();
    BodyInflater(const BodyInflater&) = delete;
    BodyInflater& operator=(const BodyInflater&) = delete;

    void feed(std::string_view bytes);
    /// To be called once, after the last byte.
    void finish();
    /// Whether further bytes change nothing.
    [[nodiscard]] bool isOver() const { return m_form == Form::Over; }

private:
    enum class Form { Unknown, Plain, Gzip, Over };
    class Stream;

    void inflate(std::string_view bytes);

    std::function<void(std::string_view)> m_onBytes;
    Form m_form = Form::Unknown;
    /// What came before the form was known.
    std::string m_head;
    std::unique_ptr<Stream> m_stream;
    std::uint64_t m_inflatedBytes = 0;
};

} // namespace ondavia
