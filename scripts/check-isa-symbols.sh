#!/usr/bin/env bash
# Checks that object files built for one instruction set define no code outside that build's
# own namespace. Inline functions and templates are emitted as shared (weak) symbols, and the
# linker keeps one copy for the whole module: a copy built with AVX2 could then be the one the
# baseline build calls, on a processor without AVX2. Only the build's getter and code in its
# inline namespace may be defined.
#
#   check-isa-symbols.sh <namespace> <getter> <object files...>
set -euo pipefail
[[ $# -ge 3 ]] || { echo "usage: $0 <namespace> <getter> <object files...>" >&2; exit 2; }
namespace=$1 getter=$2 status=0
for object in "${@:3}"; do
  symbols=$(nm -C --defined-only --extern-only "$object")
  # Defined external code symbols: T (text), W (weak), i (indirect function).
  stray=$(awk '$2 ~ /^[TWi]$/' <<<"$symbols" | grep -v -e "::${namespace}::" -e "::${getter}<" || true)
  [[ -z "$stray" ]] || { printf '%s defines code outside %s:\n%s\n' "$object" "$namespace" "$stray" >&2; status=1; }
  # Every file must define its getter, or the check looked at the wrong objects.
  grep -q "::${getter}<" <<<"$symbols" || { echo "$object does not define ${getter}" >&2; status=1; }
done
exit $status
