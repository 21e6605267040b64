#include "transports/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <new>
#include <system_error>
#include <thread>

namespace quorl {

namespace {

constexpr int firstOwnDescriptor = 3; // after the three standard streams

// glibc 2.36 declares its own wrappers of these two without C linkage.
int openPidDescriptor(pid_t pid) {
    return static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
}

void sendSignal(int pidDescriptor, int signal) {
    syscall(SYS_pidfd_send_signal, pidDescriptor, signal, nullptr, 0);
}

// These calls fail only for want of memory.
void require(int error) {
    if (error != 0)
        throw std::bad_alloc();
}

// What happens between the fork and the exec.
class SpawnPlan {
public:
    SpawnPlan(const std::array<int, 3>& streams, const std::filesystem::path& workingDirectory) {
        require(posix_spawn_file_actions_init(&fileActions));
        require(posix_spawnattr_init(&attributes));
        for (int standard = 0; standard < firstOwnDescriptor; ++standard)
            require(posix_spawn_file_actions_adddup2(&fileActions,
                                                     streams[static_cast<std::size_t>(standard)], standard));
        require(posix_spawn_file_actions_addchdir_np(&fileActions, workingDirectory.c_str()));
        // Ours are closed on exec anyway; this is for those that a library has opened without that flag.
        require(posix_spawn_file_actions_addclosefrom_np(&fileActions, firstOwnDescriptor));

        sigset_t signals;
        sigfillset(&signals);
        require(posix_spawnattr_setsigdefault(&attributes, &signals));
        sigemptyset(&signals);
        require(posix_spawnattr_setsigmask(&attributes, &signals));
        require(posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                                          POSIX_SPAWN_SETSID));
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&fileActions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    posix_spawn_file_actions_t fileActions{};
    posix_spawnattr_t attributes{};
};

// exec takes its texts as char* and does not write to them.
std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

// exec would silently cut such a text short.
bool holdsNUL(const std::vector<std::string>& texts) {
    return std::any_of(texts.begin(), texts.end(),
                       [](const std::string& text) { return text.find('\0') != std::string::npos; });
}

std::vector<std::string> wordsOf(const ChildProcess::Program& program) {
    std::vector<std::string> words{program.executable};
    if (program.lookup == ChildProcess::Lookup::path) {
        // The child changes its working directory before it looks for the file.
        std::error_code failure;
        const auto path = std::filesystem::absolute(program.executable, failure);
        if (!failure)
            words.front() = path.string();
    }
    words.insert(words.end(), program.arguments.begin(), program.arguments.end());
    return words;
}

std::vector<std::string> variablesOf(const std::map<std::string, std::string>& environment) {
    std::vector<std::string> variables;
    variables.reserve(environment.size());
    for (const auto& [name, value] : environment)
        variables.emplace_back(name).append("=").append(value);
    return variables;
}

std::optional<std::int32_t> reap(int pidDescriptor, int options) {
    siginfo_t info{};
    int result = 0;
    do
        result = waitid(P_PIDFD, static_cast<id_t>(pidDescriptor), &info, WEXITED | options);
    while (result != 0 && errno == EINTR);
    if (result != 0)
        return -1; // the process was started with SIGCHLD ignored, so the kernel has reaped the child itself
    return info.si_pid == 0 ? std::nullopt : std::optional<std::int32_t>(info.si_status);
}

} // namespace

Attempt<ChildProcess> ChildProcess::start(const Program& program, const Streams& streams) {
    using Outcome = Attempt<ChildProcess>;
    const auto words = wordsOf(program);
    const auto variables =
        program.environment ? variablesOf(*program.environment) : std::vector<std::string>();
    if (holdsNUL(words) || holdsNUL(variables))
        return Outcome::failure(systemMessage(EINVAL));

    // Where our own standard streams are closed, one of these may stand in another's place.
    std::array<int, 3> numbers{streams.input, streams.output, streams.error};
    std::array<Descriptor, 3> moved;
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        if (numbers[index] >= firstOwnDescriptor)
            continue;
        moved[index] = Descriptor(fcntl(numbers[index], F_DUPFD_CLOEXEC, firstOwnDescriptor));
        if (!moved[index])
            return Outcome::failure(systemMessage(errno));
        numbers[index] = moved[index].get();
    }

    const SpawnPlan plan(numbers, program.workingDirectory);
    pid_t pid = 0;
    // The two differ in nothing but the search; neither falls back to a shell.
    const auto spawn = program.lookup == Lookup::path ? posix_spawn : posix_spawnp;
    const int spawnError =
        spawn(&pid, words.front().c_str(), &plan.fileActions, &plan.attributes, pointersTo(words).data(),
              program.environment ? pointersTo(variables).data() : environ);
    if (spawnError != 0)
        return Outcome::failure(systemMessage(spawnError));

    Descriptor pidDescriptor(openPidDescriptor(pid));
    if (!pidDescriptor) {
        // Out of descriptors. A child that cannot be awaited is not kept; it has not been reaped, so the
        // number is still its own.
        const int openError = errno;
        kill(pid, SIGKILL);
        while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
        }
        return Outcome::failure(systemMessage(openError));
    }
    return Outcome::success(ChildProcess(std::move(pidDescriptor)));
}

ChildProcess::~ChildProcess() {
    if (!end || endCode || waitUntil(Deadline()))
        return;
    // A thread of its own is the price of the rare child that will not end; without one it would stay a
    // zombie for as long as we run.
    try {
        std::thread([left = std::move(end)] { reap(left.get(), 0); }).detach();
    } catch (const std::system_error&) {
        return; // no thread to be had: a zombie is the lesser evil
    }
}

bool ChildProcess::waitUntil(Deadline deadline) {
    if (endCode)
        return true;
    pollfd ended{end.get(), POLLIN, 0};
    if (!pollUntil({&ended, 1}, deadline))
        return false;
    endCode = reap(end.get(), WNOHANG);
    return endCode.has_value();
}

void ChildProcess::terminate() const {
    sendSignal(end.get(), SIGTERM); // fails only where the child has ended
}

} // namespace quorl
