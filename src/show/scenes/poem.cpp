#include "show/scenes/poem.h"

namespace {

// The toast (line 13) is on the screen while the sign passes, seconds 60 to 64. Line 18 must be short, as line 19
// follows after half a screen. The last line must be short too: the end of a long one would enter just before the
// scene ends.
constexpr const char* kPoem[2][kPoemLines] = {
    {
        "Am Ende der Gasse, da stand unsre Bar.",
        "Dort brannte noch Licht, wo sonst keines war.",
        "Am Ecktisch, da wurde gestritten, gelacht.",
        "Aus einem Getr\xe4nk wurde oft eine Nacht.",
        "Die Klinke war locker, die St\xfchle aus Holz.",
        "Der Wirt kannte jeden und war darauf stolz.",

        "Dort trafen sich alle, und keiner blieb fremd.",

        "Wir malten auf Deckel, was keiner verstand.",
        "Die H\xe4lfte davon h\xe4ngt bei uns an der Wand.",
        "Wer pleite war, dem wurde trotzdem gezapft.",
        "Wir haben den Heimweg nur selten geschafft.",

        "Dann hing eines Abends ein Zettel am Tor.",
        "Der Wirt las ihn allen noch einmal laut vor.",
        "Nun hebt eure Gl\xe4ser, egal, wo ihr seid!",
        "Wir trinken auf euch und die herrliche Zeit!",
        "Auf alle, die fehlen, und die wir noch sehn!",
        "Auf alle die N\xe4"
        "chte, die nie ganz vergehn!",
        "Die Gasse ist dunkel, die F\xe4sser sind leer.",
        "Wir kommen noch her.",

        "Wo zwei von uns sitzen, da steht sie noch heut.",
        "Die St\xfchle sind neu, doch es sind unsre Leut.",
        "Schlaf gut, alte Bar!",
    },
    {
        "There was a small bar at the end of the lane.",
        "Its window shone gold in the dark and the rain.",
        "The door used to stick, so we gave it a shove.",
        "The jukebox knew only one song about love.",
        "Somebody waved from the table out back.",
        "Somebody's coat had the last hook on the rack.",

        "Everyone came there, and nobody knocked.",

        "We argued till two and made up before three.",
        "Whoever was broke got his coffee for free.",
        "We drew all our plans on a napkin or two.",
        "And one of the wildest, we swear it, came true.",

        "One evening the landlord took down the sign.",
        "He said: this last round, my friends, is mine.",
        "So up with your glasses, whoever you are!",
        "And this one's for everyone, near and far!",
        "To those who moved on and to those who remain!",
        "To all who came in just to wait out the rain!",
        "The corner is quiet, the barstools are gone.",
        "The light is still on.",

        "Wherever we gather, we bring it along.",
        "Two friends and a table, and there is the song.",
        "Good night, old bar!",
    },
};

// Lines first..last: x = (i + offset) * 1024 - speed * t, with these exact values.
struct Run {
    int first, last;
    double offset; // screens
    double speed;  // units per second
};

constexpr Run kRuns[] = {
    {0, 5, 0.5, 243.2}, {6, 6, 2.5, 281.6}, {7, 10, 3, 294.4}, {11, 18, 12, 422.4}, {19, 21, 11.5, 422.4},
};

// The run that line i belongs to.
const Run& run_of(int i) {
    const Run* run = kRuns;
    while (i > run->last) ++run;
    return *run;
}

} // namespace

const char* poem_line(bool english, int i) { return kPoem[english ? 1 : 0][i]; }

int poem_pen_x(bool english, int i) {
    if (i == 2) return 20;
    if (i == 3 || (i == 13 && !english)) return 0;
    return 10;
}

double poem_left(int i, double t) {
    const Run& run = run_of(i);
    return (i + run.offset) * 1024 - run.speed * t;
}
