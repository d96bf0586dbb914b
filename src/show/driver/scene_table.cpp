#include "show/driver/scene_table.h"

#include "show/driver/music.h"
#include "show/scenes/scenes.h"

SceneTable g_scenes = {
    {clear_prepare, clear_start, clear_render, clear_stop, clear_release, 0, 0.0, nullptr},
    {flash_prepare, flash_start, flash_render, flash_stop, flash_release, 0, 0.0, nullptr},
    {title_prepare, title_start, title_render, title_stop, title_release, 0, 0.0, nullptr},
    {greetings_prepare, greetings_start, greetings_render, greetings_stop, greetings_release, 0, 0.0,
     nullptr},
    {gyro_prepare, gyro_start, gyro_render, gyro_stop, gyro_release, 0, 0.0, nullptr},
    {cross_prepare, cross_start, cross_render, cross_stop, cross_release, 0, 0.0, nullptr},
    {text_screen_prepare, text_screen_start, text_screen_render, text_screen_stop, text_screen_release, 0,
     0.0, nullptr},
    {scroller_prepare, scroller_start, scroller_render, scroller_stop, scroller_release, 0, 0.0, nullptr},
    {credits_prepare, credits_start, credits_render, credits_stop, credits_release, 0, 0.0, nullptr},
};

Scene* g_scene_list = nullptr;

namespace {

// Drawing order: the flash overlay comes last, over all other active scenes.
constexpr SceneIndex kRenderOrder[] = {kTitle,      kGreetings, kGyro,    kCross,
                                       kTextScreen, kScroller,  kCredits, kFlash};

} // namespace

void link_and_prepare_scenes() {
    Scene** link = &g_scene_list;
    for (SceneIndex index : kRenderOrder) {
        Scene& scene = g_scenes[index];
        *link = &scene;
        scene.prepare();
        link = &scene.next;
    }
}

void shutdown_scenes() {
    music_release();
    for (Scene* scene = g_scene_list; scene; scene = scene->next) {
        if (scene->release) scene->release();
    }
}
