// The default sound device of the machine, through libcubeb.
//
// Devices are opened and closed on a thread of its own, for the library waits for ever where a sound server accepts and
// does not answer; while it waits there is no device. It tries at most once a second.
#pragma once

#include <memory>

#include "hosts/desktop/sound/device.h"

namespace desktop {

class CubebDevices : public Devices {
public:
    CubebDevices();
    ~CubebDevices() override; // does not wait for the thread
    CubebDevices(const CubebDevices&) = delete;
    CubebDevices& operator=(const CubebDevices&) = delete;

    std::unique_ptr<Device> take() override;
    bool failed() const override;
    void give_back(std::unique_ptr<Device> device) override;

private:
    struct State;

    std::shared_ptr<State> state_; // the thread's as well
};

} // namespace desktop
