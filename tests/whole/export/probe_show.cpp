// A show that does what the real one does not: frames that clear nothing, textures copied long before they are shown,
// state left to the next frame in many ways, an end of its own. The environment variable PROBE says which. Its music,
// size and end are those of the real show.
#include <GL/glu.h>
#include <GL/glut.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "show/fmod_ex.h"

namespace {

std::string g_probe;
FMOD_SYSTEM* g_system = nullptr;
FMOD_SOUND* g_music = nullptr;
FMOD_CHANNEL* g_channel = nullptr;
bool g_second = false;
int g_frame = 0;
GLuint g_texture = 0;
GLuint g_list = 0;
GLUquadric* g_quadric = nullptr;

void play(const char* file) {
    FMOD_System_CreateSound(g_system, file, FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESTREAM, nullptr, &g_music);
    FMOD_System_PlaySound(g_system, FMOD_CHANNEL_FREE, g_music, 0, &g_channel);
}

void flat_view() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, 1024, 768, 0, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void quad(double x0, double y0, double x1, double y1) {
    glBegin(GL_QUADS);
    glTexCoord2d(0, 1);
    glVertex2d(x0, y0);
    glTexCoord2d(1, 1);
    glVertex2d(x1, y0);
    glTexCoord2d(1, 0);
    glVertex2d(x1, y1);
    glTexCoord2d(0, 0);
    glVertex2d(x0, y1);
    glEnd();
}

void clear(float grey) {
    glClearColor(grey, grey, grey, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// A square that moves on a screen which is cleared every 40th frame only.
void draw_trail() {
    if (g_frame % 40 == 0) clear(0);
    flat_view();
    glColor3f(1.0f, static_cast<float>(g_frame % 7) / 7.0f, 0.2f);
    quad(10.0 * (g_frame % 100), 100, 10.0 * (g_frame % 100) + 5, 200);
}

void copy_picture() {
    glBindTexture(GL_TEXTURE_2D, g_texture);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 512, 512, 0);
}

// Copies the picture of frame 5, which also shows what frame 3 copied, and shows it from frame 30 on.
void draw_late_texture() {
    clear(static_cast<float>(g_frame % 3) / 4.0f);
    flat_view();
    glColor3f(0.2f, 0.9f, static_cast<float>(g_frame % 5) / 5.0f);
    quad(100, 400, 200, 600);
    if (g_frame == 3) copy_picture();
    if (g_frame == 5 || g_frame >= 30) {
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, g_texture);
        glColor3f(1, 1, 1);
        quad(300, 300, 500, 500);
        if (g_frame == 5) copy_picture();
        glDisable(GL_TEXTURE_2D);
    }
}

// The same, bound and drawn by a display list.
void draw_late_texture_by_list() {
    clear(static_cast<float>(g_frame % 3) / 4.0f);
    flat_view();
    glColor3f(0.2f, 0.9f, static_cast<float>(g_frame % 5) / 5.0f);
    quad(100, 400, 200, 600);
    if (g_frame == 3) copy_picture();
    glBindTexture(GL_TEXTURE_2D, 0);
    if (g_frame >= 30) glCallList(g_list);
}

// A lit square without a normal of its own: it takes the one that the frame before left, by a list, a
// cylinder, or a primitive of its own. Also a colour, a texture coordinate, a matrix and a blend function are
// left over.
void draw_leftovers() {
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    flat_view();
    glEnable(GL_LIGHT0);
    glEnable(GL_LIGHTING);
    glEnable(GL_COLOR_MATERIAL);
    glBegin(GL_QUADS); // the current normal and colour
    glVertex2d(100, 100);
    glVertex2d(200, 100);
    glVertex2d(200, 200);
    glVertex2d(100, 200);
    glEnd();
    const float step = static_cast<float>(g_frame % 17) / 17.0f;
    if (g_frame % 3 == 0) {
        glNormal3f(0, 0, 1);
        glCallList(g_list);
    } else if (g_frame % 3 == 1) {
        gluCylinder(g_quadric, 3, 1 + step, 5, 7 + g_frame % 5, 2);
    } else {
        glBegin(GL_TRIANGLES);
        glNormal3f(step, 0, 1);
        glColor3f(step, 1 - step, 0.5f);
        glVertex2d(0, 0);
        glVertex2d(1, 0);
        glMatrixMode(GL_TEXTURE); // an error here, which leaves the mode as it was
        glVertex2d(1, 1);
        glEnd();
    }
    glEnd(); // one too many: an error
}

// 512 x 512 pixels of the frame buffer become a texture that is laid over the whole picture's left part; a
// point of size 8 and a line of width 4 beside it.
void draw_scaled() {
    clear(0);
    glViewport(0, 0, 512, 512);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, 512, 0, 512, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_TEXTURE_2D);
    glColor3f(1, 0, 0);
    quad(0, 0, 100.5, 512);
    glColor3f(0, 1, 0);
    quad(100.5, 200.5, 512, 512);
    copy_picture();
    clear(0);
    glViewport(0, 0, 1024, 768);
    flat_view();
    glEnable(GL_TEXTURE_2D);
    glColor3f(1, 1, 1);
    quad(0, 256, 512, 768);
    glDisable(GL_TEXTURE_2D);
    glPointSize(8);
    glBegin(GL_POINTS);
    glVertex2d(800, 200);
    glEnd();
    glLineWidth(4);
    glBegin(GL_LINES);
    glVertex2d(600, 400);
    glVertex2d(700, 400);
    glEnd();
}

void reshape(int, int) {}
void idle() { glutPostRedisplay(); }
void no_idle() {}

void show_frame() {
    unsigned position = 0;
    FMOD_Channel_GetPosition(g_channel, &position, FMOD_TIMEUNIT_MS);
    if (!g_second && position >= 74000) {
        FMOD_Sound_Release(g_music);
        play("zev_voc.mp3");
        g_second = true;
        position = 0;
    }
    if (g_second && position >= 87700) std::exit(0);
    if (g_probe == "exit" && position >= 1000) std::exit(7);
    if (g_probe == "trail") draw_trail();
    if (g_probe == "late texture") draw_late_texture();
    if (g_probe == "late list") draw_late_texture_by_list();
    if (g_probe == "leftovers") draw_leftovers();
    if (g_probe == "scale") draw_scaled();
    if (g_probe == "exit") clear(0.5f);
    ++g_frame;
    glFlush();
    glutSwapBuffers();
}

void load() {
    clear(0.75f);
    glutSwapBuffers();
    glGenTextures(1, &g_texture);
    glBindTexture(GL_TEXTURE_2D, g_texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    g_quadric = gluNewQuadric();
    g_list = glGenLists(1);
    glNewList(g_list, GL_COMPILE);
    if (g_probe == "late list") {
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, g_texture);
        glColor3f(1, 1, 1);
        quad(300, 300, 500, 500);
        glDisable(GL_TEXTURE_2D);
    } else {
        glNormal3f(0.6f, 0, 0.8f);
        glBegin(GL_QUADS);
        glVertex2d(0, 0);
        glNormal3f(0.3f, 0.2f, 0.5f);
        glVertex2d(1, 0);
        glVertex2d(1, 1);
        glVertex2d(0, 1);
        glEnd();
    }
    glEndList();
    FMOD_System_Create(&g_system);
    FMOD_System_Init(g_system, 1, FMOD_INIT_NORMAL, nullptr);
    if (g_probe != "silent") play("zev.mp3");
    glutDisplayFunc(g_probe == "silent" ? idle : show_frame);
    if (g_probe == "stands still") glutIdleFunc(no_idle);
}

} // namespace

int main(int argc, char** argv) {
    const char* probe = std::getenv("PROBE");
    g_probe = probe ? probe : "";
    std::printf("Which? ");
    std::printf("%c\n", std::getchar());
    glutInit(&argc, argv);
    glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH);
    glutInitWindowSize(1024, 768);
    glutGameModeString("1024x768:32@60");
    glutEnterGameMode();
    glutReshapeFunc(reshape);
    glutIdleFunc(idle);
    glutDisplayFunc(load);
    glutMainLoop();
    return 0;
}
