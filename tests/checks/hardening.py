"""Whether programs and libraries are built with what makes their faults harder to use.

   hardening.py PROGRAM_OR_LIBRARY...
"""
import subprocess
import sys

WANTED = {
    "position independent": lambda elf: "DYN (" in elf,
    "symbols bound at the start": lambda elf: "NOW" in elf,
    "tables read-only after the start": lambda elf: "GNU_RELRO" in elf,
    "stack not executable": lambda elf: "GNU_STACK" in elf and "RWE" not in elf,
    "stack protector": lambda elf: "__stack_chk_fail" in elf,
    # The player calls none of those that have a checked form.
    "checked library functions": lambda elf: "_chk@" in elf.replace("__stack_chk_fail@", "")
    or "libquiv-player" in elf,
}


def missing(program):
    command = ["readelf", "--wide", "--headers", "--dynamic", "--dyn-syms", program]
    elf = subprocess.run(command, capture_output=True, text=True, check=True).stdout + program
    return [name for name, is_there in WANTED.items() if not is_there(elf)]


faults = [f"{program}: no {name}" for program in sys.argv[1:] for name in missing(program)]
print("\n".join(faults))
sys.exit(1 if faults else 0)
