# Runs the scripts of one folder in turn, as starts of the editor in one home:
#   cmake -DREPLAY=program -DSCRIPTS=folder -DHOME=folder -P RunInTurn.cmake
# A script that ends with "kill" must die of it; every other one must succeed.
file(REMOVE_RECURSE "${HOME}")
file(MAKE_DIRECTORY "${HOME}")
file(GLOB scripts "${SCRIPTS}/*.jsonl")
list(SORT scripts)
foreach(script IN LISTS scripts)
    execute_process(COMMAND "${REPLAY}" --strict --home "${HOME}" "${script}"
        RESULT_VARIABLE result)
    file(STRINGS "${script}" lines)
    list(GET lines -1 last)
    if(last MATCHES "\"do\": \"kill\"")
        if(NOT result MATCHES "killed")
            message(FATAL_ERROR "${script} was to be killed and ended with: ${result}")
        endif()
    elseif(NOT result EQUAL 0)
        message(FATAL_ERROR "${script} failed: ${result}")
    endif()
endforeach()
file(REMOVE_RECURSE "${HOME}")
