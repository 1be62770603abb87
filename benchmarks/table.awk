# The table of ./bench: awk -f table.awk rows.txt NAME.json ...
# The time of a benchmark is the smallest of its repetitions, in ms.

function trimmed(text)
{
    gsub(/^[ \t]+|[ \t]+$/, "", text)
    return text
}

# "name": value, of a line of JSON
function value(line)
{
    sub(/^[^:]*": /, "", line)
    sub(/,$/, "", line)
    gsub(/^"|"$/, "", line)
    return line
}

# Without the endings that the library puts behind a name
function bare(name)
{
    while (sub(/\/(real_time|process_time|manual_time|iterations:[0-9]+|repeats:[0-9]+)$/, "", name))
        ;
    return name
}

function rounded(number)
{
    if (number < 10)
        return sprintf("%.2f", number)
    return sprintf(number < 100 ? "%.1f" : "%.0f", number)
}

function shown(milliseconds)
{
    if (milliseconds < 0.1)
        return rounded(1000 * milliseconds) " us"
    if (milliseconds >= 10000)
        return rounded(milliseconds / 1000) " s"
    return rounded(milliseconds) " ms"
}

function note(key, milliseconds)
{
    if (!(key in time) || milliseconds < time[key])
        time[key] = milliseconds
}

FNR == 1 { files++ }

files == 1 {
    if ($0 ~ /^#/ || NF == 0)
        next
    split($0, part, "|")
    ++rows
    for (column = 1; column <= 5; ++column)
        cell[rows, column] = trimmed(part[column])
    next
}

FNR == 1 {
    program = FILENAME
    sub(/.*\//, "", program)
    sub(/(-[0-9]+)?\.json$/, "", program)
}
/^ *"run_name": / { key = program " " bare(value($0)); aggregate = 0; failed = 0 }
/^ *"run_type": "aggregate"/ { aggregate = 1 }
/^ *"error_occurred": true/ { failed = 1 }
/^ *"real_time": / { real = value($0) + 0 }
/^ *"time_unit": / {
    unit = value($0)
    if (!aggregate && !failed)
        note(key, real * (unit == "ns" ? 1e-6 : unit == "us" ? 1e-3 : 1))
}
/^ *"whole_ms": / {
    if (!aggregate && !failed) {
        note("whole " key, value($0) + 0)
        sampled[key] = 1
    }
}

END {
    form = "%-52s | %10s | %10s | %8s | %9s\n"
    printf form, "", "plain", "ours", "ratio", "work x 2"
    printf form, "----------------------------------------------------", "----------", "----------", "--------", "---------"
    for (row = 1; row <= rows; ++row) {
        ours = cell[row, 2] " " cell[row, 3]
        twice = cell[row, 2] " " cell[row, 4]
        plain = cell[row, 2] " " cell[row, 5]
        scaled = plain in sampled
        if (scaled)
            plain = "whole " plain
        growth = ratio = reference = mine = "-"
        if (ours in time)
            mine = shown(time[ours])
        if (plain in time)
            reference = (scaled ? "~" : "") shown(time[plain])
        if (ours in time && plain in time)
            ratio = rounded(time[plain] / time[ours])
        if (ours in time && twice in time)
            growth = "x " sprintf("%.1f", time[twice] / time[ours])
        printf form, cell[row, 1], reference, mine, ratio, growth
    }
    print ""
    print "~: timed on a sample and scaled up. ratio: plain to ours. work x 2: how much longer twice the work takes."
}
