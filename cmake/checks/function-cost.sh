#!/usr/bin/env bash
# function-cost.sh SECONDS MEGABYTES COMPILER [FLAG...]
# Fails unless 200 lambdas of eight signatures, given to addStatement, compile at -O2 in less processor time and memory
# than that. On a machine where <string> and <vector> cost more than 0.21 s the limit of time grows with those.
set -euo pipefail
export LC_ALL=C

limit=$1 megabytes=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
printf '#include <string>\n#include <vector>\n' >"$work/standard.cpp"

shapes=(
    'L"a", L"b"}, [](int a, int b) { return a * NUMBER + b; }'
    'L"text"}, [](const qx::string& text) { return text.size() > NUMBER; }'
    'L"a", L"b"}, [](double a, std::optional<double> b) { return a * b.value_or(NUMBER); }'
    'L"parts"}, [](const std::vector<qx::string>& parts) { return static_cast<int>(parts.size()) + NUMBER; }'
    'L"any"}, [](qx::script::codecontext&, const qx::genericValue& any) { return !any.isNull() && NUMBER > 3; }'
    'L"step"}, [counter](int step) { *counter += step + NUMBER; }'
    '}, [counter] { return *counter + NUMBER; }'
    'L"yes", L"day", L"n"}, [](bool yes, qx::date day, int n) { return yes ? day.dayOfMonth() : n + NUMBER; }'
)
{
    printf '#include <qxScriptHost.h>\nvoid addAll(const std::shared_ptr<int>& counter)\n{\n'
    for ((i = 0; i < 200; ++i)); do
        echo "    qx::host::addStatement(L\"made$i\", {${shapes[i % ${#shapes[@]}]//NUMBER/$i});"
    done
    echo "}"
} >"$work/functions.cpp"

# Prints the seconds of processor time and the kilobytes at their peak.
cost() {
    python3 - "$@" <<'PYTHON'
import resource, subprocess, sys
subprocess.run(sys.argv[1:], check=True)
used = resource.getrusage(resource.RUSAGE_CHILDREN)
print("%.2f %d" % (used.ru_utime + used.ru_stime, used.ru_maxrss))
PYTHON
}

read -r standard _ < <(cost "$@" -fsyntax-only "$work/standard.cpp")
limit=$(awk "BEGIN { print $limit * ($standard > 0.21 ? $standard / 0.21 : 1) }")
read -r seconds kilobytes < <(cost "$@" -O2 -c "$work/functions.cpp" -o "$work/functions.o")
echo "200 functions: $seconds s (limit $limit s), $((kilobytes / 1024)) MB (limit $megabytes MB)"
awk "BEGIN { exit !($seconds < $limit && $kilobytes < $megabytes * 1024) }"
