// What the desktop checks need of an X server and nothing of GTK: a part of the screen as a
// PPM image, and a click.
//   x11_tool grab X Y WIDTH HEIGHT OUT.ppm
//   x11_tool click X Y BUTTON
//   x11_tool type TEXT        (lower-case letters, digits and spaces, then Return)
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

int grab(Display* display, int x, int y, int width, int height, const char* out) {
    XImage* image = XGetImage(display, DefaultRootWindow(display), x, y, unsigned(width),
                              unsigned(height), AllPlanes, ZPixmap);
    if (image == nullptr) return 1;
    FILE* file = std::fopen(out, "wb");
    if (file == nullptr) return 1;
    std::fprintf(file, "P6\n%d %d\n255\n", width, height);
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const unsigned long pixel = XGetPixel(image, column, row);
            const unsigned char rgb[] = {static_cast<unsigned char>((pixel >> 16) & 0xff),
                                         static_cast<unsigned char>((pixel >> 8) & 0xff),
                                         static_cast<unsigned char>(pixel & 0xff)};
            std::fwrite(rgb, 1, 3, file);
        }
    }
    XDestroyImage(image);
    return std::fclose(file) == 0 ? 0 : 1;
}

int click(Display* display, int x, int y, unsigned button) {
    XTestFakeMotionEvent(display, -1, x, y, CurrentTime);
    XTestFakeButtonEvent(display, button, True, CurrentTime);
    XTestFakeButtonEvent(display, button, False, CurrentTime);
    XSync(display, False);
    return 0;
}

void press(Display* display, KeySym symbol) {
    const KeyCode code = XKeysymToKeycode(display, symbol);
    XTestFakeKeyEvent(display, code, True, CurrentTime);
    XTestFakeKeyEvent(display, code, False, CurrentTime);
}

int type(Display* display, const std::string& text) {
    for (const char letter : text) {
        press(display, letter == ' ' ? XK_space : XStringToKeysym(std::string(1, letter).c_str()));
    }
    press(display, XK_Return);
    XSync(display, False);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string command = argc > 1 ? argv[1] : "";
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        std::fprintf(stderr, "x11_tool: cannot open the display\n");
        return 1;
    }
    int status = 2;
    if (command == "grab" && argc == 7) {
        status = grab(display, std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]),
                      std::atoi(argv[5]), argv[6]);
    } else if (command == "click" && argc == 5) {
        status =
            click(display, std::atoi(argv[2]), std::atoi(argv[3]), unsigned(std::atoi(argv[4])));
    } else if (command == "type" && argc == 3) {
        status = type(display, argv[2]);
    } else {
        std::fprintf(stderr,
                     "usage: x11_tool grab X Y W H OUT.ppm | click X Y BUTTON | type TEXT\n");
    }
    XCloseDisplay(display);
    return status;
}
