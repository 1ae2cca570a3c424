// Prepended to each test script, since the script host has no include.
var checksPassed = 0, checksFailed = 0;

function check(name, got, wanted) {
    if (got === wanted) {
        checksPassed++;
    } else {
        checksFailed++;
        WScript.Echo("FAILED " + name + ": got [" + got + "], expected [" + wanted + "]");
    }
}

// The error that a function raises, as one text.
function errorOf(body) {
    try {
        body();
    } catch (error) {
        return (error.number & 0xFFFF) + ": " + error.description;
    }
    return "none";
}

// A script that stops early does not get here, and the number reveals skipped checks.
function finish(checks) {
    if (checksFailed === 0 && checksPassed === checks) {
        WScript.Echo("all checks passed");
    } else {
        WScript.Echo("FAILED: " + checksPassed + " of " + checks + " checks passed");
    }
}
