#include "detector/program/HelpText.h"

namespace bonkora::detector {

const std::string_view helpText = R"(Usage: spank [OPTION]...
Listens for knocks on this computer's case, reports each and answers with a sound.

  --stdio               report events as JSON, one object a line; end on the line "quit"
  --cooldown MS         silence after each knock, 0 to 3600000 milliseconds (750)
  --min-amplitude X     weakest knock that counts, 0 to 100 (0.05): g for an accelerometer,
                        fraction of full scale for a microphone
  --fast                half the cooldown, 0.7 times the minimum amplitude
  --volume-scaling      harder knocks sound louder

  --sexy                teasing voices, keener the faster you knock
  --halo                a solemn choir
  --custom DIR          the folder's own MP3, OGG, FLAC and WAV files
                        (without any of the three: cries of pain)

  --sensor auto         an accelerometer of at least 200 readings a second, or the microphone
  --sensor accelerometer | microphone
  --sensor file:PATH    a recording: WAV (sound) or CSV (time in s, x, y, z in g)
  --as-fast-as-possible read the recording without waiting, and without sound
  --once                end with status 1 when there is no sensor, instead of waiting for one
  --list-sensors        show what is there, and end
  --help, --version     show this, or the version, and end

For trying out: --sysfs DIR and --dev DIR name other folders than /sys and /dev.

Configuration, read from ~/.config/Bonkora/spank.conf ($XDG_CONFIG_HOME counts where it is
set; started by Bonkora it never is):
  sensor = auto         as --sensor, where the command line does not say
  device = NAME         of the accelerometer or microphone, as --list-sensors shows it
  sounds = DIR          a folder with pain, sexy and halo in place of the built-in ones
  mute = yes            count, but keep quiet
Lines that begin with # are comments.

Exit status: 0 ended as asked or at the end of a recording, 1 no sensor, 2 wrong command line.)";

const std::string_view versionText = "spank " BONKORA_VERSION;

}  // namespace bonkora::detector
