#pragma once

#include "demo/DemoOptions.h"
#include "demo/TransportLoop.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace ondavia::demo {

/// Makes the moving pictures with the ffmpeg program, once for every machine: files appear complete or not at
/// all, and several processes may share the folder. May be used from any thread; what makes a file waits for
/// it.
class MediaFactory final {
public:
    static constexpr std::size_t loops = 60;
    static constexpr std::size_t films = 4;
    static constexpr int filmSeconds = 90;
    static constexpr int longFilmSeconds = 40 * 60;
    /// As many as the longest season has.
    static constexpr int episodes = 10;

    explicit MediaFactory(std::filesystem::path folder);
    /// Ends whatever ffmpeg is still doing.
    ~MediaFactory();
    MediaFactory(const MediaFactory&) = delete;
    MediaFactory& operator=(const MediaFactory&) = delete;

    /// Makes everything in two background threads, what the demo opens with first.
    void warmUp();
    /// Makes everything and returns. Throws like those below.
    void makeAll();

    /// All of these wait until the file is there. They throw std::runtime_error when it cannot be made, and
    /// when the factory stops first.
    std::shared_ptr<const TransportLoop> loop(std::size_t number);
    std::filesystem::path film(std::size_t number, const std::string& extension);
    std::filesystem::path longFilm();
    /// From 1 on.
    std::filesystem::path episode(int number);

    /// From now on nothing new is made, and whoever waits gets an error.
    void stop();

private:
    using Arguments = std::vector<std::string>;
    [[nodiscard]] std::vector<std::function<void()>> jobs();
    std::filesystem::path make(const std::string& name, const std::function<Arguments()>& recipe);
    void runEncoder(const Arguments& arguments, const std::string& log);
    [[nodiscard]] std::filesystem::path written(const std::string& name, const std::string& text) const;

    std::filesystem::path m_folder;
    std::stop_source m_stop;
    std::mutex m_mutex;
    std::map<std::size_t, std::shared_ptr<const TransportLoop>> m_loops;
    std::vector<std::jthread> m_workers;
};

} // namespace ondavia::demo
