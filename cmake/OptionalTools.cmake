# corvane_find_program(VARIABLE NAME USE): finds an optional tool, or says in one line what is left out
# for want of it. tools/setup/common.sh shows these lines.
function(corvane_find_program variable name use)
    find_program(${variable} ${name})
    if(NOT ${variable})
        corvane_say_missing(${name} "${use}")
    endif()
endfunction()

function(corvane_say_missing name use)
    message(STATUS "Missing: ${name}; left out: ${use}")
endfunction()
