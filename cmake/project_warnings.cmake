# Every target of the project links project_warnings privately: what the compiler says, the build refuses.
add_library(project_warnings INTERFACE)
target_compile_options(project_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)

# "emit", "signals" and "slots" as bare words clash with other libraries' headers.
target_compile_definitions(project_warnings INTERFACE QT_NO_KEYWORDS QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_CAST_TO_ASCII)

option(OSTRIX_SANITIZE "Address and undefined-behaviour sanitizers in everything" OFF)
if(OSTRIX_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
