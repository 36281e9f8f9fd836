#!/bin/bash
# keys.sh QUILLMERE-KEYS: the guide's page of keys says what the action table says.
set -eu
cd "$(dirname "$0")/../.."
diff -u docs/guide/keys.md <("$1") && exit 0
echo "Make it anew: quillmere-keys >docs/guide/keys.md"
exit 1
