# The radios: which there are, access points, levels. Radio N is phyN with the interface wlanN.

# Access points first, then a station for each case.
FIRST_STATION=15
RADIOS=36
# One with five channels of 5 GHz, all without radar: a scan takes 1.5 s. A large band takes 5 s,
# and a connected station 13 s, longer than the test waits for a forced scan.
COUNTRY=BD

uptime_seconds() { cut -d' ' -f1 /proc/uptime; }

# at_access_points COMMAND...: where all radios are visible, called from a station's surroundings.
at_access_points() { nsenter -t 1 -n -m "$@"; }

# set_level RADIO DBM: what stations hear of the radio's frames from now on, -100 to -1. The kernel
# adds the transmitter's power, which is 0, and takes negative numbers as their complement only.
set_level() { printf '%u' "$2" >"/debug/ieee80211/phy$1/hwsim/rx_rssi"; }

# access_point NAME RADIO CHANNEL DBM LINE...: starts one with these lines of configuration. What
# hostapd says of it is left in the results.
access_point() {
    name=$1 radio=$2 channel=$3 dbm=$4
    shift 4
    mode=g
    [ "$channel" -gt 14 ] && mode=a
    {
        printf '%s\n' "interface=wlan$radio" driver=nl80211 ctrl_interface=/run/hostapd \
            "country_code=$COUNTRY" "channel=$channel" "hw_mode=$mode" ieee80211n=1 beacon_int=100 "$@"
    } >"/run/$name.conf"
    hostapd -B -f "$RESULTS/access-points/$name.log" "/run/$name.conf" >/dev/null
    iw dev "wlan$radio" set txpower fixed 0
    set_level "$radio" "$dbm"
    hostapd_cli -p /run/hostapd -i "wlan$radio" status >"$RESULTS/access-points/$name"
}

WPA2='wpa=2 wpa_key_mgmt=WPA-PSK rsn_pairwise=CCMP wpa_passphrase=correct-horse'
WPA3='wpa=2 wpa_key_mgmt=SAE rsn_pairwise=CCMP sae_password=correct-horse ieee80211w=2'
OWE='wpa=2 wpa_key_mgmt=OWE rsn_pairwise=CCMP ieee80211w=2'
WPA='wpa=1 wpa_key_mgmt=WPA-PSK wpa_pairwise=TKIP wpa_passphrase=correct-horse'

# An escape sequence, a line break, quotes, bytes that no text has, a tag; and a name with a zero.
HOSTILE=1b5b33316d220a27fffe80c03c2f7363726970743e263b25732e2e2f
ZERO=456e64696e67002e
MOVING=8
CHANGING=9
ENDING=10
KILLED=11
LATE=12
MEASURED=13
DYING=14

start_access_points() {
    mkdir -p "$RESULTS/access-points"
    access_point open 0 1 -55 ssid=Open
    access_point wpa2 1 2 -65 ssid=Protected $WPA2
    access_point wpa3 2 3 -70 ssid=Safe $WPA3
    access_point hidden 3 4 -60 ssid=Hidden ignore_broadcast_ssid=1
    access_point twin-low 4 5 -80 ssid=Twin $WPA2
    access_point twin-high 5 149 -62 ssid=Twin $WPA2
    access_point hostile 6 7 -68 "ssid2=$HOSTILE" $WPA
    access_point owe 7 8 -72 ssid=Büro $OWE
    access_point moving "$MOVING" 9 -50 ssid=Moving
    access_point changing "$CHANGING" 10 -60 ssid=Changing
    access_point ending "$ENDING" 11 -64 "ssid2=$ZERO"
    access_point killed "$KILLED" 12 -58 ssid=Killed
    access_point measured "$MEASURED" 13 -75 ssid=Measured
    access_point dying "$DYING" 3 -60 ssid=Dying
}
