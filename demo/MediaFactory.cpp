#include "demo/MediaFactory.h"

#include "demo/MediaRecipes.h"
#include "demo/SubtitleText.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

extern char** environ;

namespace ondavia::demo {
namespace {

using namespace std::chrono_literals;

/// Raised whenever a recipe changes, so that old files are not taken for new ones.
constexpr const char* generation = "media-2";

constexpr std::array<const char*, MediaFactory::films> filmLabels{"Sessão da Noite", "Matiné de Domingo",
                                                                  "Estreia da Semana", "Cinema Clássico"};

/// Holds one file's lock among all threads and processes.
class MediaLock final {
public:
    MediaLock(const std::filesystem::path& file, const std::stop_token& stop)
        : m_descriptor(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
        while (m_descriptor >= 0 && flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
            if (stop.stop_requested()) {
                close(m_descriptor);
                throw std::runtime_error("the media factory is stopping");
            }
            std::this_thread::sleep_for(10ms);
        }
        if (m_descriptor < 0) {
            throw std::runtime_error("no lock file: " + file.string());
        }
    }
    ~MediaLock() { close(m_descriptor); }
    MediaLock(const MediaLock&) = delete;
    MediaLock& operator=(const MediaLock&) = delete;

private:
    int m_descriptor;
};

/// Starts ffmpeg in `folder` with its messages in `log`. Throws when there is no such program.
pid_t startEncoder(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                   const std::string& log) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    // An open connection must not stay open for as long as ffmpeg runs.
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    pid_t child = 0;
    const int failure = posix_spawnp(&child, pointers.front(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        throw std::runtime_error("ffmpeg cannot be started");
    }
    return child;
}

} // namespace

std::filesystem::path defaultMediaFolder() {
    if (const char* folder = std::getenv("ONDAVIA_DEMO_MEDIA_DIR"); folder != nullptr && *folder != '\0') {
        return folder;
    }
    if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && *cache != '\0') {
        return std::filesystem::path(cache) / "ondavia-demo";
    }
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home != nullptr ? home : "/tmp") / ".cache" / "ondavia-demo";
}

MediaFactory::MediaFactory(std::filesystem::path folder)
    : m_folder((folder.empty() ? defaultMediaFolder() : std::move(folder)) / generation) {
    std::filesystem::create_directories(m_folder);
}

MediaFactory::~MediaFactory() {
    stop();
}

void MediaFactory::stop() {
    m_stop.request_stop();
}

void MediaFactory::runEncoder(const Arguments& arguments, const std::string& log) {
    const pid_t child = startEncoder(arguments, m_folder, log);
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        if (m_stop.stop_requested()) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            break;
        }
        std::this_thread::sleep_for(5ms);
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error("ffmpeg failed, see " + (m_folder / log).string());
    }
    std::filesystem::remove(m_folder / log);
}

std::filesystem::path MediaFactory::make(const std::string& name, const std::function<Arguments()>& recipe) {
    const std::filesystem::path file = m_folder / name;
    if (std::filesystem::exists(file)) {
        return file;
    }
    const MediaLock lock(m_folder / (name + ".lock"), m_stop.get_token());
    if (std::filesystem::exists(file)) {
        return file;
    }
    Arguments arguments{"ffmpeg", "-v", "error", "-nostdin", "-y"};
    for (std::string& argument : recipe()) {
        arguments.push_back(std::move(argument));
    }
    arguments.push_back(name + ".part");
    runEncoder(arguments, name + ".log");
    std::filesystem::rename(m_folder / (name + ".part"), file);
    return file;
}

/// Small inputs of a recipe; called under the lock of what is made from them.
std::filesystem::path MediaFactory::written(const std::string& name, const std::string& text) const {
    std::ofstream(m_folder / name, std::ios::binary) << text;
    return name;
}

std::shared_ptr<const TransportLoop> MediaFactory::loop(std::size_t number) {
    const std::size_t index = number % loops;
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_loops.find(index); found != m_loops.end()) {
            return found->second;
        }
    }
    const std::string stem = "loop-" + std::to_string(index);
    const auto file =
        make(stem + ".ts", [&] { return loopRecipe(index, written(stem + ".txt", loopLabel(index))); });
    auto made = std::make_shared<const TransportLoop>(file);
    const std::lock_guard lock(m_mutex);
    return m_loops.try_emplace(index, std::move(made)).first->second;
}

std::filesystem::path MediaFactory::film(std::size_t number, const std::string& extension) {
    const std::size_t index = number % films;
    const std::string stem = "film-" + std::to_string(index);
    const auto subtitles = [&](const std::string& name) {
        return written(name, subtitleText(SubtitleFormat::srt, SubtitleLanguage::portuguese, filmSeconds))
            .string();
    };
    const auto original = make(stem + ".mp4", [&] {
        return filmRecipe(index, filmSeconds, written(stem + ".txt", filmLabels[index]),
                          subtitles(stem + ".mp4.srt"));
    });
    if (extension != "mkv") {
        return original;
    }
    return make(stem + ".mkv", [&] { return repackRecipe(stem + ".mp4", subtitles(stem + ".mkv.srt")); });
}

std::filesystem::path MediaFactory::longFilm() {
    return make("film-long.mp4", [this] {
        const auto sound = make("film-long-sound.mp4", longSoundRecipe);
        return longFilmRecipe(longFilmSeconds, written("film-long.txt", "A Última Vindima"),
                              sound.filename().string());
    });
}

std::filesystem::path MediaFactory::episode(int number) {
    const int index = (number - 1) % episodes + 1;
    const std::string stem = "episode-" + std::to_string(index);
    return make(stem + ".mp4", [&] {
        return episodeRecipe(index, written(stem + ".txt", "Episódio " + std::to_string(index)));
    });
}

std::vector<std::function<void()>> MediaFactory::jobs() {
    std::vector<std::function<void()>> all;
    for (std::size_t number = 0; number < films; ++number) {
        all.emplace_back([this, number] { film(number, "mkv"); });
    }
    for (int number = 1; number <= episodes; ++number) {
        all.emplace_back([this, number] { episode(number); });
    }
    for (std::size_t number = 0; number < loops; ++number) {
        all.emplace_back([this, number] { loop(number); });
    }
    all.emplace_back([this] { longFilm(); });
    return all;
}

void MediaFactory::makeAll() {
    warmUp();
    m_workers.clear();
    for (const auto& job : jobs()) {
        job();
    }
}

void MediaFactory::warmUp() {
    constexpr std::size_t workers = 2;
    for (std::size_t worker = 0; worker < workers; ++worker) {
        m_workers.emplace_back([this, worker] {
            const auto all = jobs();
            for (std::size_t index = worker; index < all.size() && !m_stop.stop_requested();
                 index += workers) {
                try {
                    all[index]();
                } catch (const std::runtime_error& error) {
                    // Whoever asks for the file gets the error too; the other files may still succeed.
                    if (!m_stop.stop_requested()) {
                        std::fprintf(stderr, "media: %s\n", error.what());
                    }
                }
            }
        });
    }
}

} // namespace ondavia::demo
