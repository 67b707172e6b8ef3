# Runs pvtool as a user would and checks its output and exit status.
file(MAKE_DIRECTORY "${WORK_DIR}")
file(WRITE "${WORK_DIR}/check.txt" "123456789")

function(run expected_rc expected_regex)
    execute_process(COMMAND "${PVTOOL}" ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out
                    ERROR_VARIABLE err)
    if(NOT rc EQUAL expected_rc)
        message(FATAL_ERROR "pvtool ${ARGN}: exit ${rc}, expected ${expected_rc}\n${out}${err}")
    endif()
    if(NOT "${out}${err}" MATCHES "${expected_regex}")
        message(FATAL_ERROR "pvtool ${ARGN}: output '${out}${err}' does not match '${expected_regex}'")
    endif()
endfunction()

run(0 "^pvtool \\(PlumvaleBaseCore\\) [0-9]+\\.[0-9]+\\.[0-9]+" --version)
run(0 "^46a5a9388a5beffe  ${WORK_DIR}/check.txt\n$" crc64 "${WORK_DIR}/check.txt")
run(1 "46a5a9388a5beffe  .*check.txt.*missing.bin: No such file" crc64 "${WORK_DIR}/check.txt"
    "${WORK_DIR}/missing.bin")
run(2 "pvtool: No file given" crc64)
run(0 "^01:00:00:00\n$" timecode 86400 24)
run(0 "^00:00:01:01\n$" timecode 25 24 --hours)
run(0 "^01:01\n$" timecode 25 24)
run(2 "not a whole number" timecode 12x 24)
run(2 "not a positive frame rate" timecode 10 0)
run(2 "Unknown command 'frobnicate'" frobnicate)
# Errors go through the message centre: translated for the user, logged in batch runs, and
# the smallest error code reported is the exit status.
run(1 "pvtool: Impossible de lire .*missing.bin" --lang=fr crc64 "${WORK_DIR}/missing.bin")
run(1 "E [0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\.[0-9][0-9][0-9] Cannot read .*missing.bin" --batch
    crc64 "${WORK_DIR}/missing.bin")
run(1 "Cannot read" crc64 "${WORK_DIR}/missing.bin" --version)
