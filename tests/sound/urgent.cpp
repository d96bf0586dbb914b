#include "tests/sound/urgent.h"

#include <sched.h>

void make_urgent(bool urgent, pid_t process) {
    sched_param parameters{};
    parameters.sched_priority = urgent ? 1 : 0;
    sched_setscheduler(process, urgent ? SCHED_RR : SCHED_OTHER,
                       &parameters); // refused to most users: no harm
}
