// A function that runs in a process of its own, for tests of what belongs to the whole process.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

class Child {
public:
    // Runs `work` in a new process, which ends with the status that it returns.
    template <class Work>
    explicit Child(Work work) {
        int ends[2];
        if (pipe(ends) != 0) return;
        id_ = fork();
        if (id_ == 0) {
            ready_ = ends[1];
            alarm(30); // a test that hangs fails
            _exit(work(*this));
        }
        close(ends[1]);
        ready_ = ends[0];
    }
    ~Child() {
        if (id_ > 0) wait();
        close(ready_);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // In the child: lets the parent's wait_until_ready return.
    void say_ready() const { static_cast<void>(!write(ready_, "", 1)); }

    // In the parent.
    void wait_until_ready() const {
        char byte;
        static_cast<void>(!read(ready_, &byte, 1));
    }
    void send(int signal) const { kill(id_, signal); }

    // Waits for the end: the exit status, or 128 + n after an end by signal n.
    int wait() {
        int status = 0;
        waitpid(id_, &status, 0);
        id_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

private:
    pid_t id_ = -1;
    int ready_ = -1;
};
