// Starts the program, presses one button or menu entry, and closes the window when the command has
// ended: the retrieval ("Get Emails") with $MAIL as the inbox, the replay of the last batch's log,
// or the import of the file that BENCH_FILE names. Without a name nothing is pressed.
#include "bench/product/program.h"

#include <exception>
#include <iostream>

int main(int argc, char **argv)
try {
    if (argc > 2) {
        std::cerr << "usage: bench_press [NAME]\n";
        return 2;
    }
    Program program(argc, argv);
    if (argc == 2)
        program.press(argv[1]);
    return program.close();
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
