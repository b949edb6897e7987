# cmake -DPROGRAM=... -DEXPECTED=FILE -P output.cmake: the program succeeds and prints what the file holds.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE printed RESULT_VARIABLE status)
file(READ ${EXPECTED} expected)
if(NOT status EQUAL 0 OR NOT printed STREQUAL expected)
    message(FATAL_ERROR "status ${status}, printed:\n${printed}")
endif()
