// What the page says, in both languages. Functions take the parts that vary.
const TEXTS = {
    en: {
        lead: "A real-time audiovisual show: 162 seconds of music and pictures.",
        warning: "<b>Warning:</b> the show contains bright flashing light. It may affect people with " +
            "photosensitive epilepsy.",
        needs: "With sound, on a large screen: double click or F for the full screen. D, E and Return start " +
            "it, too. The language is that of the texts in the show.",
        licences: 'Licences: <a href="licenses/skav.LICENSE">program</a>, <a ' +
            'href="licenses/music.LICENSE">music</a>, fonts (<a href="licenses/Vera.LICENSE">Vera</a>, <a ' +
            'href="licenses/Arial.LICENSE">Arial</a>), libraries (<a ' +
            'href="licenses/FreeType.LICENSE">FreeType</a>, <a href="licenses/GLU.LICENSE">GLU</a>).',
        loaded: (done, all) => `${done} of ${all} MB loaded`,
        ready: "Ready.",
        decoding: "Preparing the music ...",
        ended: "That was it.",
        again: "Again",
        from_file: "A browser does not load the show from a file. Serve this folder and open the " +
            "address:\npython3 -m http.server --bind 127.0.0.1",
        no_webgl: "The show cannot be drawn here: this browser offers no WebGL 2. Another browser, or " +
            "graphics acceleration switched on in its settings, may help.",
        too_old: "This browser is too old for the show: it needs one of 2023 or later.",
        missing: (file) => `The file ${file} cannot be loaded. Reload the page to try again; if that does ` +
            "not help, the file is missing on the server.",
        bad_music: (file) => `The browser cannot decode the music in ${file}.`,
        lost: "The browser has taken the graphics away (the driver was restarted, or memory ran out). The " +
            "show can be started again.",
        crashed: (why) => `The show has stopped: ${why}`,
        silent: "No sound: there is no sound device, or the browser blocks it. The show plays silently, in " +
            "time.",
        sound_back: "The sound is back.",
    },
    de: {
        lead: "Eine audiovisuelle Show in Echtzeit: 162 Sekunden Musik und Bilder.",
        warning: "<b>Warnung:</b> Die Show enthält helles Blitzlicht. Es kann Menschen mit photosensitiver " +
            "Epilepsie schaden.",
        needs: "Am besten mit Ton auf einem großen Bildschirm: Doppelklick oder F für Vollbild. Auch D, E " +
            "und die Eingabetaste starten. Die Sprache ist die der Texte in der Show.",
        licences: 'Lizenzen: <a href="licenses/skav.LICENSE">Programm</a>, <a ' +
            'href="licenses/music.LICENSE">Musik</a>, Schriften (<a href="licenses/Vera.LICENSE">Vera</a>, ' +
            '<a href="licenses/Arial.LICENSE">Arial</a>), Bibliotheken (<a ' +
            'href="licenses/FreeType.LICENSE">FreeType</a>, <a href="licenses/GLU.LICENSE">GLU</a>).',
        loaded: (done, all) => `${done} von ${all} MB geladen`,
        ready: "Bereit.",
        decoding: "Die Musik wird vorbereitet ...",
        ended: "Das war's.",
        again: "Noch einmal",
        from_file: "Aus einer Datei lädt ein Browser die Show nicht. Diesen Ordner anbieten und die Adresse " +
            "öffnen:\npython3 -m http.server --bind 127.0.0.1",
        no_webgl: "Hier lässt sich die Show nicht zeichnen: Dieser Browser bietet kein WebGL 2. Ein anderer " +
            "Browser oder die Grafikbeschleunigung in seinen Einstellungen kann helfen.",
        too_old: "Dieser Browser ist zu alt für die Show: Sie braucht einen von 2023 oder später.",
        missing: (file) => `Die Datei ${file} lässt sich nicht laden. Die Seite neu laden; hilft das nicht, ` +
            "fehlt die Datei auf dem Server.",
        bad_music: (file) => `Der Browser kann die Musik in ${file} nicht dekodieren.`,
        lost: "Der Browser hat die Grafik weggenommen (der Treiber wurde neu gestartet oder der Speicher " +
            "reichte nicht). Die Show lässt sich neu starten.",
        crashed: (why) => `Die Show ist stehen geblieben: ${why}`,
        silent: "Kein Ton: Es gibt kein Tongerät, oder der Browser sperrt es. Die Show läuft stumm, im Takt.",
        sound_back: "Der Ton ist wieder da.",
    },
};
