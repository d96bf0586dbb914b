#include "tests/sound/urgent.h"

#include <sched.h>

void make_urgent(bool urgent, pid_t process) {
    sched_param parameters{};
    parameters.sched_priority = urgent ? 1 : 0;
    sched_setscheduler(process, urgent ? SCHED_RR : SCHED_OTHER,
                       &parameters); // refused to most users: no harm
}

bool is_urgent() { return sched_getscheduler(0) == SCHED_RR; }

bool urgency_is_allowed() {
    const bool was_urgent = is_urgent();
    make_urgent(true);
    const bool allowed = is_urgent();
    make_urgent(was_urgent);
    return allowed;
}
