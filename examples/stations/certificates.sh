#!/bin/sh
# Certificates for the broker of a line of stations and its clients, by OpenSSL.
#   certificates.sh authority FOLDER           ca.crt and ca.key, which signs the others
#   certificates.sh server FOLDER HOST         server.crt and server.key for the broker's host
#   certificates.sh client FOLDER NAME         NAME.crt and NAME.key for a station or the gatherer
# DAYS (default 825) is how long they are valid. Keep ca.key away from the broker and the stations.
set -eu
usage() { sed -n '2,6s/^# *//p' "$0" >&2; exit 64; }
[ $# -ge 2 ] || usage
role=$1 folder=$2 name=${3:-}
days=${DAYS:-825}
mkdir -p "$folder"
umask 077

# quietly COMMAND...: what it says is shown only when it fails.
quietly() {
    output=$("$@" 2>&1) || {
        printf '%s\n' "$output" >&2
        exit 70
    }
}

# signed FILE NAME EXTENSIONS: a key and a certificate of the authority for it.
signed() {
    quietly openssl req -new -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -utf8 \
        -subj "/CN=$2" -keyout "$folder/$1.key" -out "$folder/$1.csr"
    printf '%s\n' "$3" >"$folder/$1.ext"
    quietly openssl x509 -req -in "$folder/$1.csr" -CA "$folder/ca.crt" -CAkey "$folder/ca.key" \
        -CAcreateserial -days "$days" -extfile "$folder/$1.ext" -out "$folder/$1.crt"
    rm "$folder/$1.csr" "$folder/$1.ext"
}

case $role:$name in
authority:)
    quietly openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes \
        -days "$days" -subj "/CN=antenna stations" -keyout "$folder/ca.key" \
        -out "$folder/ca.crt" ;;
*:*[/+#=\\]* | *:) usage ;;
client:ca | client:server) usage ;;
server:*[!0-9.]*) signed server "$name" "extendedKeyUsage=serverAuth
subjectAltName=DNS:$name" ;;
server:*) signed server "$name" "extendedKeyUsage=serverAuth
subjectAltName=IP:$name" ;;
client:*) signed "$name" "$name" "extendedKeyUsage=clientAuth" ;;
*) usage ;;
esac
chmod 644 "$folder"/*.crt
