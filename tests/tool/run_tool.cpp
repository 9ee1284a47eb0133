#include "tests/tool/run_tool.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace rqtest {

namespace {

constexpr std::chrono::seconds kTimeLimit{60};

void Check(bool good, const char* what) {
  if (!good) throw std::system_error(errno, std::generic_category(), what);
}

// A file descriptor that is closed at the end.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) { Check(fd >= 0, "no file descriptor"); }
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  int Get() const { return fd_; }
  void Close() {
    if (fd_ >= 0) close(fd_);
    fd_ = -1;
  }

 private:
  int fd_ = -1;
};

// Two ends of a pipe or of a terminal: what goes into `in` comes out of `out`.
struct Channel {
  Descriptor out;
  Descriptor in;
};

Channel MakePipe() {
  std::array<int, 2> ends{};
  Check(pipe2(ends.data(), O_CLOEXEC) == 0, "pipe");
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Channel MakeTerminal(unsigned short columns) {
  Channel terminal;
  terminal.out = Descriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
  Check(grantpt(terminal.out.Get()) == 0 && unlockpt(terminal.out.Get()) == 0, "pseudo-terminal");
  terminal.in = Descriptor(open(ptsname(terminal.out.Get()), O_RDWR | O_NOCTTY | O_CLOEXEC));
  winsize size{};
  size.ws_col = columns;
  size.ws_row = 25;
  Check(ioctl(terminal.in.Get(), TIOCSWINSZ, &size) == 0, "size of the terminal");
  return terminal;
}

Channel MakeOutput(const std::optional<unsigned short>& terminalColumns, const std::string& fileName) {
  if (terminalColumns) return MakeTerminal(*terminalColumns);
  Channel output = MakePipe();
  if (!fileName.empty()) output.in = Descriptor(open(fileName.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  return output;
}

Channel MakeInput(const ToolCall& call) {
  Channel input = MakePipe();
  if (!call.inputFile.empty()) input.out = Descriptor(open(call.inputFile.c_str(), O_RDONLY | O_CLOEXEC));
  return input;
}

// Between fork and exec: no more than plain system calls.
[[noreturn]] void BecomeTool(const ToolCall& call, int in, int out, int err, char* const* argv) {
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  if (call.closeInput) close(STDIN_FILENO);
  if (call.closeOutput) close(STDOUT_FILENO);
  signal(SIGPIPE, SIG_DFL);
  signal(SIGXFSZ, SIG_DFL);
  if (call.memoryLimit != 0) {
    const rlimit limit{call.memoryLimit, call.memoryLimit};
    setrlimit(RLIMIT_AS, &limit);
  }
  if (call.fileSizeLimit != 0) {
    const rlimit limit{call.fileSizeLimit, call.fileSizeLimit};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  for (const auto& [name, value] : call.environment) setenv(name.c_str(), value.c_str(), 1);
  execv(argv[0], argv);
  _exit(127);
}

void Feed(int fd, const std::string& input) {
  std::size_t done = 0;
  while (done < input.size()) {
    const ssize_t written = write(fd, input.data() + done, input.size() - done);
    if (written <= 0) return;
    done += static_cast<std::size_t>(written);
  }
}

// Takes what there is; false at the end.
bool Drain(int fd, std::string& text) {
  std::array<char, 65536> buffer;
  const ssize_t length = read(fd, buffer.data(), buffer.size());
  if (length <= 0) return false;  // a terminal ends in an error
  text.append(buffer.data(), static_cast<std::size_t>(length));
  return true;
}

// Reads both ends until they end, or the time is over.
bool ReadAll(int out, int err, ToolResult& result) {
  const auto deadline = std::chrono::steady_clock::now() + kTimeLimit;
  std::array<pollfd, 2> ends{pollfd{out, POLLIN, 0}, pollfd{err, POLLIN, 0}};
  while (ends[0].fd >= 0 || ends[1].fd >= 0) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0 || poll(ends.data(), ends.size(), static_cast<int>(left.count())) == 0) return false;
    if (ends[0].revents != 0 && !Drain(out, result.out)) ends[0].fd = -1;
    if (ends[1].revents != 0 && !Drain(err, result.err)) ends[1].fd = -1;
  }
  return true;
}

std::string WithoutReturns(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

}  // namespace

ToolResult RunTool(const ToolCall& call) {
  signal(SIGPIPE, SIG_IGN);  // the command may leave its input unread
  std::vector<std::string> words = call.arguments;
  words.insert(words.begin(), RQXML_TOOL);
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  Channel in = MakeInput(call);
  Channel out = MakeOutput(call.terminalColumns, call.outputFile);
  Channel err = MakeOutput(call.errorColumns, call.errorFile);
  if (call.breakPipe) out.out.Close();
  const pid_t child = fork();
  Check(child >= 0, "fork");
  if (child == 0) BecomeTool(call, in.out.Get(), out.in.Get(), err.in.Get(), argv.data());

  in.out.Close();
  out.in.Close();
  err.in.Close();
  std::thread feeder([&] {
    Feed(in.in.Get(), call.input);
    in.in.Close();
  });
  ToolResult result;
  const bool ended = ReadAll(out.out.Get(), err.out.Get(), result);
  if (!ended) kill(child, SIGKILL);
  int status = 0;
  Check(waitpid(child, &status, 0) == child, "waitpid");
  feeder.join();
  if (ended && WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  if (call.terminalColumns) result.out = WithoutReturns(result.out);
  return result;
}

ToolResult RunTool(const std::vector<std::string>& arguments) { return RunTool(ToolCall{.arguments = arguments}); }

bool HasTerminals() {
  try {
    MakeTerminal(80);
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

std::ostream& operator<<(std::ostream& out, const ToolResult& result) {
  return out << "exit code " << result.exitCode << "\n--- standard output\n"
             << result.out << "\n--- standard error\n"
             << result.err << "\n---\n";
}

std::string SourceFile(const std::string& name) { return std::string(RQXML_SOURCE_DIR) + "/" + name; }

}  // namespace rqtest
