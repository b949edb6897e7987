#!/usr/bin/env python3
# gen_w9.py LANG [COUNT] > file : 2,000 functions, or COUNT, of the same shape in LANG
import sys
T = {
"qxscr": """scrdef f_%d(in<int> a, in<int> b)
{
    createvar(s, "%d");
    createvar(t, "");
    createvar(i, "0");
    while(issmaller<int>(i, a), {
        setvar(s, add<int>(add<int>(s, multiply<int>(i, "3")), b));
        if(isbigger<int>(s, "1000"), {
            setvar(s, subtract<int>(s, "1000"));
            setvar(t, strcat(t, "x", s));
        });
        setvar(i, add<int>(i, "1"));
    });
    return(strcat(t, "-", s));
}
""",
"lua": """function f_%d(a, b)
  local s = %d
  local t = ""
  for i = 0, a - 1 do
    s = s + i * 3 + b
    if s > 1000 then
      s = s - 1000
      t = t .. "x" .. s
    end
  end
  return t .. "-" .. s
end
""",
"tcl": """proc f_%d {a b} {
  set s %d
  set t ""
  for {set i 0} {$i < $a} {incr i} {
    set s [expr {$s + $i * 3 + $b}]
    if {$s > 1000} {
      set s [expr {$s - 1000}]
      set t "${t}x$s"
    }
  }
  return "$t-$s"
}
""",
"js": """function f_%d(a, b) {
  var s = %d;
  var t = "";
  for (var i = 0; i < a; i++) {
    s = s + i * 3 + b;
    if (s > 1000) {
      s = s - 1000;
      t = t + "x" + s;
    }
  }
  return t + "-" + s;
}
""",
"rb": """def f_%d(a, b)
  s = %d
  t = ""
  i = 0
  while i < a
    s = s + i * 3 + b
    if s > 1000
      s = s - 1000
      t = t + "x" + s.to_s
    end
    i += 1
  end
  t + "-" + s.to_s
end
""",
"py": """def f_%d(a, b):
    s = %d
    t = ""
    for i in range(a):
        s = s + i * 3 + b
        if s > 1000:
            s = s - 1000
            t = t + "x" + str(s)
    return t + "-" + str(s)

""",
}
lang = sys.argv[1]
count = int(sys.argv[2]) if len(sys.argv) > 2 else 2000
body = "".join(T[lang] % (i, i) for i in range(count))
sys.stdout.write(body)
