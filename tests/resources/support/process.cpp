// fork/exec with two pipes, drained together so that neither can fill up and stall the child.
#include "process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>

namespace ic::test {

ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         int timeoutSeconds) {
  ProcessResult result;
  int out[2];
  int err[2];
  if (pipe(out) != 0) return result;
  if (pipe(err) != 0) {
    close(out[0]);
    close(out[1]);
    return result;
  }
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words)
    argv.push_back(word.data());
  argv.push_back(nullptr);

  const pid_t child = fork();
  if (child == 0) {
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, 0);
    dup2(out[1], 1);
    dup2(err[1], 2);
    close(out[0]);
    close(err[0]);
    execv(program.c_str(), argv.data());
    _exit(127);
  }
  close(out[1]);
  close(err[1]);
  if (child < 0) {
    close(out[0]);
    close(err[0]);
    return result;
  }
  pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
  std::string* sinks[2] = {&result.out, &result.err};
  int streams = 2;
  char buffer[65536];
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(timeoutSeconds);
  while (streams > 0) {
    int wait = -1;
    if (timeoutSeconds > 0) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
          deadline - std::chrono::steady_clock::now());
      if (left.count() <= 0) {
        kill(child, SIGKILL);  // the pipes close with the child, which ends the loop
        result.timedOut = true;
        wait = -1;
      } else {
        wait = static_cast<int>(left.count());
      }
    }
    const int ready = poll(fds, 2, result.timedOut ? -1 : wait);
    if (ready < 0) {
      if (errno == EINTR) continue;
      break;
    }
    if (ready == 0) continue;
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
      const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
      if (n > 0) {
        sinks[i]->append(buffer, static_cast<size_t>(n));
      } else if (n == 0 || errno != EINTR) {
        close(fds[i].fd);
        fds[i].fd = -1;
        --streams;
      }
    }
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

}  // namespace ic::test
