# mrlr_sha256_base64(<variable> <text>) sets <variable> to the SHA-256 of <text> in Base64, as
# content security policies name a style sheet.
function(mrlr_sha256_base64 variable text)
    set(digits "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    string(SHA256 hex "${text}")
    # 32 bytes are ten groups of three and two bytes more: a third is added, and its digit replaced.
    string(APPEND hex "00")
    foreach(start RANGE 0 60 6)
        string(SUBSTRING "${hex}" ${start} 6 group)
        foreach(shift 18 12 6 0)
            math(EXPR digit "(0x${group} >> ${shift}) & 63")
            string(SUBSTRING "${digits}" ${digit} 1 character)
            string(APPEND base64 "${character}")
        endforeach()
    endforeach()
    string(REGEX REPLACE "A$" "=" base64 "${base64}")
    set(${variable} "${base64}" PARENT_SCOPE)
endfunction()
