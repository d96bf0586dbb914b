// The entry point: asks for the language on the console, opens the display and installs the callbacks. Everything
// after that happens in the callbacks (display.h); the last cue of the timeline ends the process.
#include <GL/glut.h>

#include <cstdio>

#include "show/driver/display.h"
#include "show/stage/language.h"

namespace {

constexpr int kScreenWidth = 1024;
constexpr int kScreenHeight = 768;

// Asks for the language. Only a lowercase "e" selects English; "E", Return and end of input leave German.
void ask_language() {
    g_english = 0;
    std::printf("German or English Text [G/e]?: ");
    if (std::getchar() == 'e') {
        std::printf("English screen text...\n\n");
        g_english = 1;
    } else {
        std::printf("German screen text...\n\n");
    }
}

} // namespace

int main(int argc, char** argv) {
    ask_language();

    glutInit(&argc, argv);
    glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH);
    glutInitWindowSize(kScreenWidth, kScreenHeight);
    glutInitWindowPosition(100, 100);

    g_game_mode = 1;
    char mode[32];
    std::sprintf(mode, "%dx%d:32@60", kScreenWidth, kScreenHeight);
    glutGameModeString(mode);
    glutEnterGameMode(); // the result is not checked: the host decides what to do without the mode

    // Black bars of 76 pixels below and 78 above the picture, until the first reshape.
    glViewport(0, 76, 1024, 614);

    glutReshapeFunc(g_reshape_cb);
    glutIdleFunc(g_idle_cb);
    glutDisplayFunc(g_display_cb);
    glutMainLoop();
    return 0; // never reached: the main loop does not return
}
