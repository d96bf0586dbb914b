// The 2D overlay and what is drawn in it and in the rooms.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include "show/stage/overlay.h"
#include "show/stage/shapes.h"
#include "tests/hosts/recording/recording.h"

using recording::calls_of;

TEST(Overlay, PushesBothMatricesAndMeasures1024By768FromTheTopLeft) {
    const int projection = recording::projection_depth(), modelview = recording::modelview_depth();
    EXPECT_EQ(calls_of(begin_2d), calls_of([] {
                  glMatrixMode(GL_PROJECTION);
                  glPushMatrix();
                  glLoadIdentity();
                  glOrtho(0, 1024, 768, 0, -100, 100);
                  glMatrixMode(GL_MODELVIEW);
                  glPushMatrix();
                  glLoadIdentity();
              }));
    EXPECT_EQ(calls_of(end_2d), calls_of([] {
                  glMatrixMode(GL_PROJECTION);
                  glPopMatrix();
                  glMatrixMode(GL_MODELVIEW);
                  glPopMatrix();
              }));
    EXPECT_EQ(recording::projection_depth(), projection);
    EXPECT_EQ(recording::modelview_depth(), modelview);
}

TEST(Rect, IsOneQuadWithoutTextureCoordinates) {
    EXPECT_EQ(calls_of([] { draw_rect(1, 2, 3, 4); }), calls_of([] {
                  glBegin(GL_QUADS);
                  glVertex2d(1, 2);
                  glVertex2d(3, 2);
                  glVertex2d(3, 4);
                  glVertex2d(1, 4);
                  glEnd();
              }));
}

TEST(Rect, TextureCoordinatesFollowTheCorners) {
    EXPECT_EQ(calls_of([] { draw_rect_tex(1, 2, 3, 4, 0.1, 0.2, 0.3, 0.4); }), calls_of([] {
                  glBegin(GL_QUADS);
                  glTexCoord2d(0.1, 0.2);
                  glVertex2d(1, 2);
                  glTexCoord2d(0.3, 0.2);
                  glVertex2d(3, 2);
                  glTexCoord2d(0.3, 0.4);
                  glVertex2d(3, 4);
                  glTexCoord2d(0.1, 0.4);
                  glVertex2d(1, 4);
                  glEnd();
              }));
}

TEST(Grid, TwoByThreeIsThreeStripsOfSixVertices) {
    const recording::Log calls = calls_of([] { draw_grid_2d(0, 0, 8, 6, 0.5, 2, 3); });
    EXPECT_EQ(calls, calls_of([] {
                  glNormal3d(0, 0, 1);
                  for (double y : {0.0, 2.0, 4.0}) {
                      glBegin(GL_QUAD_STRIP);
                      for (double x : {0.0, 4.0, 8.0}) {
                          glTexCoord2d(x / 2, (y + 2) / 2);
                          glVertex2d(x, y + 2);
                          glTexCoord2d(x / 2, y / 2);
                          glVertex2d(x, y);
                      }
                      glEnd();
                  }
              }));
}

TEST(Grid, AddsUpItsColumns) {
    double x = 0.0; // ten tenths added up are not 1
    for (int i = 0; i < 10; ++i) x += 0.1;
    ASSERT_NE(x, 1.0);
    const recording::Log vertices =
        recording::only(calls_of([] { draw_grid_2d(0, 0, 1, 1, 1, 10, 1); }), "glVertex2d");
    ASSERT_EQ(vertices.size(), 22u);
    EXPECT_EQ(vertices.back(), (recording::Call{"glVertex2d", {x, 0.0}}));
}

TEST(Grid, WithoutRowsDrawsNothing) {
    EXPECT_EQ(calls_of([] { draw_grid_2d(0, 0, 8, 6, 0.5, 2, 0); }), calls_of([] { glNormal3d(0, 0, 1); }));
}

TEST(Box, HasSixFacesWithTheWholeTextureOnEach) {
    const recording::Log calls = calls_of([] { draw_box(1, 2, 3, 4, 5, 6); });
    EXPECT_EQ(calls, calls_of([] {
                  const auto corner = [](double s, double t, double x, double y, double z) {
                      glTexCoord2d(s, t);
                      glVertex3d(x, y, z);
                  };
                  glBegin(GL_QUADS);
                  glNormal3d(0, 0, -1);
                  corner(0, 0, 1, 2, 3);
                  corner(1, 0, 4, 2, 3);
                  corner(1, 1, 4, 5, 3);
                  corner(0, 1, 1, 5, 3);
                  glNormal3d(1, 0, 0);
                  corner(0, 0, 4, 2, 3);
                  corner(1, 0, 4, 2, 6);
                  corner(1, 1, 4, 5, 6);
                  corner(0, 1, 4, 5, 3);
                  glNormal3d(0, 0, 1);
                  corner(0, 0, 4, 2, 6);
                  corner(1, 0, 1, 2, 6);
                  corner(1, 1, 1, 5, 6);
                  corner(0, 1, 4, 5, 6);
                  glNormal3d(-1, 0, 0);
                  corner(0, 0, 1, 2, 6);
                  corner(1, 0, 1, 2, 3);
                  corner(1, 1, 1, 5, 3);
                  corner(0, 1, 1, 5, 6);
                  glNormal3d(0, 1, 0);
                  corner(0, 0, 1, 5, 3);
                  corner(1, 0, 4, 5, 3);
                  corner(1, 1, 4, 5, 6);
                  corner(0, 1, 1, 5, 6);
                  glNormal3d(0, -1, 0);
                  corner(0, 0, 1, 2, 3);
                  corner(1, 0, 1, 2, 6);
                  corner(1, 1, 4, 2, 6);
                  corner(0, 1, 4, 2, 3);
                  glEnd();
              }));
}

TEST(Box, CentredAndArrayFormsAreTheSameBox) {
    const recording::Log box = calls_of([] { draw_box(-1, 0, 1, 3, 6, 9); });
    EXPECT_EQ(calls_of([] { draw_box_centered(1, 3, 5, 2, 3, 4); }), box);
    const double corners[6] = {-1, 0, 1, 3, 6, 9};
    EXPECT_EQ(calls_of([&corners] { draw_box_array(corners); }), box);
}
