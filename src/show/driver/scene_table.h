// The scene record, the table of all nine scenes, and the list of those that are rendered.
#pragma once

// Only render and release may be null.
struct Scene {
    void (*prepare)(); // once, during loading: textures, texts, geometry
    void (*start)();   // when the timeline activates the scene
    void (*render)();  // once per frame while active
    void (*stop)();    // when the timeline deactivates the scene, also as the first half of a restart
    void (*release)(); // tear-down; only shutdown_scenes calls it

    int active;        // 1 while active, else 0
    double start_time; // seconds of show time: the time of the cue that last started the scene
    Scene* next;       // next entry of the render list, or null
};

// Indices into the table.
enum SceneIndex {
    kClear,
    kFlash,
    kTitle,
    kGreetings,
    kGyro,
    kCross,
    kTextScreen,
    kScroller,
    kCredits,
    kSceneCount
};

using SceneTable = Scene[kSceneCount];
extern SceneTable g_scenes;

// Head of the render list; null until link_and_prepare_scenes.
extern Scene* g_scene_list;

// Builds the render list (title, greetings, gyro, cross, text screen, scroller, credits, flash overlay) and prepares
// each scene as it is linked. The clear scene is neither linked nor prepared.
void link_and_prepare_scenes();

// Releases the music and every linked scene. Not called by the show, which ends by exit.
void shutdown_scenes();
