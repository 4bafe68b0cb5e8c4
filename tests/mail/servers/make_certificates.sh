#!/usr/bin/env bash
# make_certificates.sh FOLDER: an authority (ca.pem) and what servers of a test show. Each NAME.pem
# has its NAME.key beside it.
set -euo pipefail

cd "$1"

new_key() {
    openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256 -out "$1.key" 2>/dev/null
}

# own_certificate NAME SUBJECT EXTENSION: one that signs itself.
own_certificate() {
    new_key "$1"
    openssl req -new -x509 -key "$1.key" -out "$1.pem" -days 30 -subj "/CN=$2" -addext "$3"
}

# certificate NAME HOSTS ISSUER DAYS
certificate() {
    new_key "$1"
    openssl req -new -key "$1.key" -out "$1.csr" -subj "/CN=$1"
    printf 'subjectAltName=%s\nextendedKeyUsage=serverAuth\n' "$2" >"$1.ext"
    openssl x509 -req -in "$1.csr" -CA "$3.pem" -CAkey "$3.key" -CAcreateserial -out "$1.pem" \
        -days "$4" -extfile "$1.ext" 2>/dev/null
}

here=DNS:localhost,IP:127.0.0.1
own_certificate ca "Test authority" "keyUsage=critical,keyCertSign"
own_certificate self localhost "subjectAltName=$here"
certificate good "$here" ca 30
certificate wrong DNS:elsewhere.example ca 30
certificate expired "$here" ca -1
# The authority's name without its key.
own_certificate impostor "Test authority" "keyUsage=critical,keyCertSign"
certificate forged "$here" impostor 30
