# corvane_find_program(VARIABLE NAME USE): finds an optional tool. If it is missing, reports in one
# line what is not built without it. tools/setup/common.sh prints these lines.
function(corvane_find_program variable name use)
    find_program(${variable} ${name})
    if(NOT ${variable})
        corvane_say_missing(${name} "${use}")
    endif()
endfunction()

function(corvane_say_missing name use)
    message(STATUS "Missing: ${name}; left out: ${use}")
endfunction()
