# Compiler warning flags shared by every PlumvaleBaseCore target.
function(plumvale_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                             -Wold-style-cast -Wcast-align -Woverloaded-virtual)
    if(PLUMVALE_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()
