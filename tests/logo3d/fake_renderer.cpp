#include "logo3d/LogoTurn.h"

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

// Stands in for orva-logo: every frame it draws is red = its number and green = 255 minus
// that, with every other pixel blue. A mesh path of "fail" is one it cannot load.
int main()
{
    std::string path;
    if (!std::getline(std::cin, path) || path == "fail")
        return 1;
    int width = 0;
    int height = 0;
    while (std::cin >> width >> height) {
        std::vector<unsigned char> frame(std::size_t(width) * std::size_t(height) * 4);
        for (int i = 0; i < logo::kFramesPerTurn; ++i) {
            for (std::size_t p = 0; p < frame.size(); p += 4) {
                frame[p] = static_cast<unsigned char>(i);
                frame[p + 1] = static_cast<unsigned char>(255 - i);
                frame[p + 2] = p / 4 % 2 ? 255 : 0;
                frame[p + 3] = 255;
            }
            std::fwrite(frame.data(), 1, frame.size(), stdout);
            std::fflush(stdout);
        }
    }
    return 0;
}
