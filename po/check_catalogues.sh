#!/bin/sh
# Usage: check_catalogues.sh MSGCMP TEMPLATE LANGUAGE...  (run in po/)
# Fails when a language misses a key of the template or keeps one the sources no longer use.
msgcmp=$1 template=$2
shift 2
status=0
for language in "$@"; do
    "$msgcmp" "$language.po" "$template" || { echo "$language.po misses keys"; status=1; }
    "$msgcmp" --use-untranslated --use-fuzzy "$template" "$language.po" ||
        { echo "$language.po keeps keys the sources dropped"; status=1; }
done
exit $status
