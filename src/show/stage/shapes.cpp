#include "show/stage/shapes.h"

GLUquadric* g_quadric = nullptr;

void draw_rect(double x0, double y0, double x1, double y1) {
    glBegin(GL_QUADS);
    glVertex2d(x0, y0);
    glVertex2d(x1, y0);
    glVertex2d(x1, y1);
    glVertex2d(x0, y1);
    glEnd();
}

void draw_rect_tex(double x0, double y0, double x1, double y1, double s0, double t0, double s1, double t1) {
    glBegin(GL_QUADS);
    glTexCoord2d(s0, t0);
    glVertex2d(x0, y0);
    glTexCoord2d(s1, t0);
    glVertex2d(x1, y0);
    glTexCoord2d(s1, t1);
    glVertex2d(x1, y1);
    glTexCoord2d(s0, t1);
    glVertex2d(x0, y1);
    glEnd();
}

void draw_grid_2d(double x0, double y0, double x1, double y1, double tex_scale, int nx, int ny) {
    const double dx = (x1 - x0) / nx;
    const double dy = (y1 - y0) / ny;
    glNormal3d(0, 0, 1);
    double y = y0;
    for (; ny != 0; --ny) {
        double x = x0;
        glBegin(GL_QUAD_STRIP);
        for (int i = 0; i <= nx; ++i) {
            glTexCoord2d(x * tex_scale, (y + dy) * tex_scale);
            glVertex2d(x, y + dy);
            glTexCoord2d(x * tex_scale, y * tex_scale);
            glVertex2d(x, y);
            x += dx;
        }
        glEnd();
        y += dy;
    }
}

void draw_box(double x0, double y0, double z0, double x1, double y1, double z1) {
    const double x[2] = {x0, x1};
    const double y[2] = {y0, y1};
    const double z[2] = {z0, z1};
    struct Face {
        int normal[3];
        int corners[4][3]; // 0 or 1 on each axis
    };
    static constexpr Face kFaces[6] = {
        {{0, 0, -1}, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}},
        {{1, 0, 0}, {{1, 0, 0}, {1, 0, 1}, {1, 1, 1}, {1, 1, 0}}},
        {{0, 0, 1}, {{1, 0, 1}, {0, 0, 1}, {0, 1, 1}, {1, 1, 1}}},
        {{-1, 0, 0}, {{0, 0, 1}, {0, 0, 0}, {0, 1, 0}, {0, 1, 1}}},
        {{0, 1, 0}, {{0, 1, 0}, {1, 1, 0}, {1, 1, 1}, {0, 1, 1}}},
        {{0, -1, 0}, {{0, 0, 0}, {0, 0, 1}, {1, 0, 1}, {1, 0, 0}}},
    };
    static constexpr int kTexCoords[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

    glBegin(GL_QUADS);
    for (const Face& face : kFaces) {
        glNormal3d(face.normal[0], face.normal[1], face.normal[2]);
        for (int i = 0; i < 4; ++i) {
            const int* corner = face.corners[i];
            glTexCoord2d(kTexCoords[i][0], kTexCoords[i][1]);
            glVertex3d(x[corner[0]], y[corner[1]], z[corner[2]]);
        }
    }
    glEnd();
}

void draw_box_centered(double cx, double cy, double cz, double hx, double hy, double hz) {
    draw_box(cx - hx, cy - hy, cz - hz, cx + hx, cy + hy, cz + hz);
}

void draw_box_array(const double box[6]) { draw_box(box[0], box[1], box[2], box[3], box[4], box[5]); }
