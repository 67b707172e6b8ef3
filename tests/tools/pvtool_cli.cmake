# Runs pvtool as a user would and checks its output and exit status.
file(MAKE_DIRECTORY "${WORK_DIR}")
file(WRITE "${WORK_DIR}/check.txt" "123456789")
# The language follows the system's unless -lang is given: run in the C locale.
set(ENV{LC_ALL} C)

# Runs pvtool without its banner (the frame's -nologo) and matches stdout then stderr.
function(run expected_rc expected_regex)
    execute_process(COMMAND "${PVTOOL}" -nologo ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out
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
run(1 "pvtool: Impossible de lire .*missing.bin" -lang fr crc64 "${WORK_DIR}/missing.bin")
run(1 "E [0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\.[0-9][0-9][0-9] Cannot read .*missing.bin" --batch
    crc64 "${WORK_DIR}/missing.bin")
# Options are never read as file names; "--" ends them, and "-" is standard input.
run(2 "Unknown option '--version'" crc64 "${WORK_DIR}/missing.bin" --version)
run(2 "Unknown option '--frob'" --frob crc64 "${WORK_DIR}/check.txt")
run(2 "pvtool: Option inconnue « -x »" -lang fr crc64 -x)
run(0 "^46a5a9388a5beffe  ${WORK_DIR}/check.txt\n$" crc64 -- "${WORK_DIR}/check.txt")
# A language without a catalogue is reported once, and the run goes on in English.
run(0 "^01:01\npvtool: No catalogue for language 'xx': messages stay in English.\n$"
    -lang xx timecode 25 24)
# Output that cannot be written is an error, as for the standard tools.
execute_process(COMMAND "${PVTOOL}" -nologo crc64 "${WORK_DIR}/check.txt" OUTPUT_FILE /dev/full
                RESULT_VARIABLE rc ERROR_VARIABLE err)
if(NOT rc EQUAL 1 OR NOT err MATCHES "^pvtool: Cannot write the output: No space left")
    message(FATAL_ERROR "pvtool crc64 > /dev/full: exit ${rc}, '${err}'")
endif()
# Remapping: a share written on another machine names the folder where it is mounted here.
file(WRITE "${WORK_DIR}/orvacfg.ini"
     "[Connection0]\r\nSharename=\\\\srv\\share\r\nMountPoint=${WORK_DIR}\r\nDrive=S:\r\n")
run(0 "^configuration: ${WORK_DIR}/orvacfg.ini\nshare    //srv/share -> ${WORK_DIR}\ndrive    s: -> ${WORK_DIR}\n$"
    remap "--config=${WORK_DIR}/orvacfg.ini" --rules)
run(0 "^\\\\\\\\SRV\\\\Share\\\\a.scn -> ${WORK_DIR}/a.scn\n/home/x -> /home/x\n$"
    remap "--config=${WORK_DIR}/orvacfg.ini" "\\\\SRV\\Share\\a.scn" /home/x)
run(2 "No path given" remap)
# The frame: its banner on standard error unless -nologo; its options are consumed wherever
# they stand, except one that misses its value, which is left to the tool.
execute_process(COMMAND "${PVTOOL}" timecode 25 24 RESULT_VARIABLE rc OUTPUT_VARIABLE out
                ERROR_VARIABLE err)
if(NOT rc EQUAL 0 OR NOT out STREQUAL "01:01\n" OR NOT err MATCHES "^Plumvale Tool [0-9.]+ \\(")
    message(FATAL_ERROR "pvtool timecode with its banner: exit ${rc}, '${out}', '${err}'")
endif()
run(0 "^01:01\n$" timecode -lang en 25 24)
run(2 "Unknown option '-lang'" crc64 -lang)
# Special folders: every one named, the translation folder as -langdir gives it.
run(0 "^root +/[^\n]*\nconfig .*\nlang +${WORK_DIR}/lang\n.*\ntemp +[^\n]+\n.*\ndatabase +[^\n]+\nhelp +[^\n]+\n$"
    -langdir "${WORK_DIR}/lang" folders)
run(2 "Unknown option '--all'" folders --all)
# Syntax checks: the lexer's own reports with their line, then one error naming the file.
file(WRITE "${WORK_DIR}/good.cfg" "# settings\nname, \"a b\", 12\n")
file(WRITE "${WORK_DIR}/bad.cfg" "a 1\nb \"open\n")
run(0 "^${WORK_DIR}/good.cfg: 6 tokens, 3 lines\n$" lex --comma "${WORK_DIR}/good.cfg")
run(3 "Syntax error at line 3:\n missing \" \\(open\n\\).*bad.cfg has syntax errors"
    lex "${WORK_DIR}/bad.cfg")
run(1 "Cannot read .*none.cfg" lex "${WORK_DIR}/none.cfg" "${WORK_DIR}/bad.cfg")
# Signatures in md5sum's layout, an empty file included; errors as for crc64.
file(WRITE "${WORK_DIR}/empty.txt" "")
run(0 "^25f9e794323b453885f5181f1b624d0b  ${WORK_DIR}/check.txt\nd41d8cd98f00b204e9800998ecf8427e  ${WORK_DIR}/empty.txt\n$"
    sign "${WORK_DIR}/check.txt" "${WORK_DIR}/empty.txt")
run(1 "missing.bin: No such file" sign "${WORK_DIR}/missing.bin")
run(2 "Unknown option '-x'" sign -x)
