' Prepended to each test script, since the script host has no include.
Option Explicit
Dim checksPassed, checksFailed
checksPassed = 0
checksFailed = 0

Sub Check(name, got, wanted)
    If got = wanted Then
        checksPassed = checksPassed + 1
    Else
        checksFailed = checksFailed + 1
        WScript.Echo "FAILED " & name & ": got [" & got & "], expected [" & wanted & "]"
    End If
End Sub

' Returns the contents of Err as one text, and clears it.
Function LastError()
    LastError = Err.Number & " " & Err.Source & ": " & Err.Description
    Err.Clear
End Function

' A script that stops early does not get here, and the number reveals skipped checks.
Sub Finish(checks)
    If checksFailed = 0 And checksPassed = checks Then
        WScript.Echo "all checks passed"
    Else
        WScript.Echo "FAILED: " & checksPassed & " of " & checks & " checks passed"
    End If
End Sub
