// The five functions of each scene that the scene table lists (driver/scene_table.h).
#pragma once

#define SKAV_SCENE(name)                                                                                     \
    void name##_prepare();                                                                                   \
    void name##_start();                                                                                     \
    void name##_render();                                                                                    \
    void name##_stop();                                                                                      \
    void name##_release()

SKAV_SCENE(clear);
SKAV_SCENE(flash);
SKAV_SCENE(title);
SKAV_SCENE(greetings);
SKAV_SCENE(gyro);
SKAV_SCENE(cross);
SKAV_SCENE(text_screen);
SKAV_SCENE(scroller);
SKAV_SCENE(credits);

#undef SKAV_SCENE
