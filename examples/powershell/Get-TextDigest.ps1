# Prints the digests of a text by every hash algorithm.
#
#   powershell -STA -File Get-TextDigest.ps1 TEXT
#
# Needs the registered DLL of PowerShell's bitness. Not run by this project's tests: they have no Windows PowerShell.
param([Parameter(Mandatory = $true)][string] $Text)

# The type library's numbers, whose names are not available to late binding.
$hashes = [ordered]@{ MD5 = 1; MD4 = 2; MD2 = 3; 'SHA-1' = 4 }      # latchkeyHashMD5 and so on
$latchkeyErrorRunTime = 1

# Prints the error record: no operation raises an error by itself.
function Get-Failure($main) {
    $description = if ($main.ErrorType -eq $latchkeyErrorRunTime) { $main.RTErrorDescription } else { $main.AppErrorDescription }
    "failed at location $($main.ErrorLocationID): $description"
}

# One clsMain for the process, made first, kept alive and released last. All threads of a multi-threaded apartment share
# one host thread and so one error record, which the release of any clsMain there would take away.
$main = New-Object -ComObject Latchkey.clsMain
$api = New-Object -ComObject Latchkey.clsCryptoAPI
try {
    foreach ($hash in $hashes.GetEnumerator()) {
        $digest = $api.CreateHash($Text, $hash.Value, $true)
        if ($digest -eq '') { throw "$($hash.Key) $(Get-Failure $main)" }
        '{0,-6} {1}' -f $hash.Key, $digest
    }
}
finally {
    foreach ($object in $api, $main) {                 # clsMain last: without it, operations raise 91
        [void][Runtime.InteropServices.Marshal]::ReleaseComObject($object)
    }
}
