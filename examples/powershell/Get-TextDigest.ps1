# Prints the digests of a text by every hash algorithm.
#
#   powershell -STA -File Get-TextDigest.ps1 TEXT
#
# Needs the registered DLL of PowerShell's bitness. Not run by this project's tests: they have no Windows PowerShell.
param([Parameter(Mandatory = $true)][string] $Text)

# -STA gives this script a thread, and so an error record, of its own. Without it all threads share one record: make
# one clsMain for the process, keep it alive, and release it last.
$main = New-Object -ComObject Latchkey.clsMain         # first: makes the error record of this thread
$api = New-Object -ComObject Latchkey.clsCryptoAPI
try {
    $number = 0
    foreach ($algorithm in 'MD5', 'MD4', 'MD2', 'SHA-1') {
        $number++
        $digest = $api.CreateHash($Text, $number, $true)
        if ($digest -eq '') {                          # no operation raises an error
            throw "$algorithm failed at location $($main.ErrorLocationID): $($main.AppErrorDescription)"
        }
        '{0,-6} {1}' -f $algorithm, $digest
    }
}
finally {
    foreach ($object in $api, $main) {                 # clsMain last: without it, operations raise 91
        [void][Runtime.InteropServices.Marshal]::ReleaseComObject($object)
    }
}
