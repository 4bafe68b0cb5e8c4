// Starts the program, presses one button, and closes the window when the command has ended: the
// retrieval ("Get Emails") with $MAIL as the inbox, or the replay of the last batch's log.
#include "bench/product/program.h"

#include <exception>
#include <iostream>

int main(int argc, char **argv)
try {
    if (argc != 2) {
        std::cerr << "usage: bench_press BUTTON\n";
        return 2;
    }
    Program program(argc, argv);
    program.click(argv[1]);
    return program.close();
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
